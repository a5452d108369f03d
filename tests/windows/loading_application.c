/* A host in plain C that loads the host library at run time from another folder than its own, as .NET and
   plug-ins do, in the code page of a program that does not request UTF-8. It repeatedly loads the library,
   uses it from several threads and frees it, and expects the same preview from every thread in every round.

     loading_application default_folders|altered_path LIBRARY RAW_FILE JPEG_FILE */
#include <stdint.h>
#include <string.h>

#include "loading.h"
#include "lumvik_host.h"

/* Pointers to the functions of the library, with the types declared in the header. */
#define FUNCTIONS(apply)                                                                                  \
  apply(last_error) apply(open) apply(close) apply(settings_create) apply(settings_close)                 \
      apply(settings_set_number) apply(set_settings) apply(post) apply(wait) apply(read_exif) apply(hash) \
          apply(save) apply(has_metadata_module)
#define DECLARE(name) static __typeof__(&lumvik_host_##name) host_##name;
FUNCTIONS(DECLARE)

static void Resolve(HMODULE library) {
#define RESOLVE(name)                                                                                    \
  CHECK((host_##name = (__typeof__(host_##name))(void*)GetProcAddress(library, "lumvik_host_" #name)) != \
        NULL);
  FUNCTIONS(RESOLVE)
}

static void Require(lumvik_host_status status, int line) {
  if (status == LUMVIK_HOST_OK) return;
  fprintf(stderr, "line %d: status %d: %s\n", line, (int)status, host_last_error());
  exit(1);
}
#define REQUIRE(call) Require(call, __LINE__)

static char raw_file[4 * MAX_PATH];
static char jpeg_file[4 * MAX_PATH];
static char written_file[4 * MAX_PATH];

/* A checksum of the preview. */
static void Receive(const lumvik_host_frame* frame, void* sum) {
  CHECK(frame->status == LUMVIK_HOST_OK);
  for (int32_t y = 0; y < frame->height; ++y) {
    const uint8_t* row = frame->pixels + (size_t)y * frame->stride;
    for (int32_t i = 0; i < frame->width * frame->channels; ++i) *(DWORD*)sum = *(DWORD*)sum * 31 + row[i];
  }
}

static lumvik_host_photo* Developed(void) {
  lumvik_host_photo* photo = NULL;
  lumvik_host_settings* settings = NULL;
  REQUIRE(host_open(raw_file, NULL, &photo));
  REQUIRE(host_settings_create(&settings));
  REQUIRE(host_settings_set_number(settings, "exposure", 0.5F));
  REQUIRE(host_settings_set_number(settings, "clarity", 15));
  REQUIRE(host_set_settings(photo, settings));
  REQUIRE(host_settings_close(settings));
  return photo;
}

static DWORD WINAPI Develop(void* unused) {
  (void)unused;
  lumvik_host_photo* photo = Developed();
  DWORD sum = 0;
  REQUIRE(host_post(photo, NULL, NULL, Receive, &sum, NULL));
  REQUIRE(host_wait(photo, 0, -1));
  REQUIRE(host_close(photo));
  CHECK(sum != 0);
  return sum;
}

/* Everything that opens files by path. */
static void UseFiles(void) {
  lumvik_host_exif exif = {0};
  lumvik_host_exif kept = {0};
  uint64_t hash = 0;
  exif.struct_size = sizeof(exif);
  kept.struct_size = sizeof(kept);
  REQUIRE(host_has_metadata_module());
  REQUIRE(host_hash(jpeg_file, &hash));
  REQUIRE(host_read_exif(jpeg_file, &exif));
  CHECK(exif.make[0] != '\0');

  lumvik_host_photo* photo = NULL;
  REQUIRE(host_open(jpeg_file, NULL, &photo));
  REQUIRE(host_save(photo, written_file, NULL));
  REQUIRE(host_close(photo));
  REQUIRE(host_read_exif(written_file, &kept));
  CHECK(strcmp(kept.make, exif.make) == 0);
  CHECK(strcmp(kept.datetime, exif.datetime) == 0);
}

int wmain(int count, wchar_t** arguments) {
  CHECK(count == 5);
  CHECK(GetACP() != CP_UTF8);
  const DWORD search = wcscmp(arguments[1], L"altered_path") == 0
                           ? LOAD_WITH_ALTERED_SEARCH_PATH
                           : LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS;
  wchar_t file[MAX_PATH];
  CHECK(GetFullPathNameW(arguments[2], MAX_PATH, file, NULL) > 0); /* the search needs a full path */
  wchar_t names[3][MAX_PATH];
  TemporaryName(L".ARW", names[0]);
  TemporaryName(L".jpg", names[1]);
  TemporaryName(L" 2.jpg", names[2]);
  CHECK(CopyFileW(arguments[3], names[0], FALSE));
  CHECK(CopyFileW(arguments[4], names[1], FALSE));
  ToUtf8(names[0], raw_file);
  ToUtf8(names[1], jpeg_file);
  ToUtf8(names[2], written_file);
  DeleteFileW(names[2]);

  DWORD expected = 0;
  for (int round = 0; round < ROUNDS; ++round) {
    const HMODULE library = LoadLibraryExW(file, NULL, search);
    CHECK(library != NULL);
    Resolve(library);
    const DWORD sum = RunInThreads(Develop);
    if (round == 0) expected = sum;
    CHECK(sum == expected);
    CHECK(FreeLibrary(library));
    Sleep(20); /* worker threads of the library would run unmapped code here */
  }
  CHECK(GetModuleHandleW(L"lumvik_host.dll") != NULL);

  const HMODULE library = LoadLibraryExW(file, NULL, search);
  Resolve(library);
  UseFiles();
  for (int i = 0; i < 3; ++i) CHECK(DeleteFileW(names[i])); /* each exists under that name */
  return 0;
}
