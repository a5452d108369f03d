/* A host in plain C that loads the library at run time, as most bindings do, in the code page of a program
   that does not request UTF-8. It repeatedly loads the library, uses it from several threads and frees it,
   and expects the same image from every thread in every round.

     loading_host LIBRARY PHOTOGRAPH */
#include <stdint.h>
#include <string.h>

#include "loading.h"
#include "lumvik.h"

/* Pointers to the functions of the library, with the types declared in the header. */
#define DECLARE(name) static __typeof__(&lumvik_##name) name
DECLARE(version);
DECLARE(create_context);
DECLARE(destroy_context);
DECLARE(load_arw);
DECLARE(last_error);
DECLARE(get_width);
DECLARE(get_height);
DECLARE(set_exposure);
DECLARE(set_contrast);
DECLARE(set_clarity);
DECLARE(get_preview);
DECLARE(export_png);

static void Resolve(HMODULE library) {
#define RESOLVE(name) \
  CHECK((name = (__typeof__(name))(void*)GetProcAddress(library, "lumvik_" #name)) != NULL)
  RESOLVE(version);
  RESOLVE(create_context);
  RESOLVE(destroy_context);
  RESOLVE(load_arw);
  RESOLVE(last_error);
  RESOLVE(get_width);
  RESOLVE(get_height);
  RESOLVE(set_exposure);
  RESOLVE(set_contrast);
  RESOLVE(set_clarity);
  RESOLVE(get_preview);
  RESOLVE(export_png);
}

static char photograph[4 * MAX_PATH];
static char written[4 * MAX_PATH];

static EngineContext* Load(void) {
  EngineContext* context = create_context();
  CHECK(context != NULL);
  if (load_arw(context, photograph, 4) != 0) {
    fprintf(stderr, "%s\n", last_error(context));
    exit(1);
  }
  return context;
}

/* Develops the photograph and returns a checksum of its preview. */
static DWORD WINAPI Develop(void* unused) {
  (void)unused;
  EngineContext* context = Load();
  set_exposure(context, 0.5f);
  set_contrast(context, 20.0f);
  set_clarity(context, 15.0f);
  const size_t size = (size_t)get_width(context) * (size_t)get_height(context) * 4;
  uint8_t* preview = malloc(size);
  CHECK(preview != NULL && size > 0);
  CHECK(get_preview(context, preview, (int)size) == 0);
  DWORD sum = 0;
  for (size_t i = 0; i < size; ++i) sum = sum * 31 + preview[i];
  free(preview);
  destroy_context(context);
  return sum;
}

int wmain(int count, wchar_t** arguments) {
  CHECK(count == 3);
  CHECK(GetACP() != CP_UTF8);

  wchar_t source[MAX_PATH];
  wchar_t target[MAX_PATH];
  TemporaryName(L".ARW", source);
  TemporaryName(L".png", target);
  CHECK(CopyFileW(arguments[2], source, FALSE));
  ToUtf8(source, photograph);
  ToUtf8(target, written);

  DWORD expected = 0;
  for (int round = 0; round < ROUNDS; ++round) {
    const HMODULE library = LoadLibraryW(arguments[1]);
    CHECK(library != NULL);
    Resolve(library);
    CHECK(strcmp(version(), "1.0.0") == 0);
    const DWORD sum = RunInThreads(Develop);
    if (round == 0) expected = sum;
    CHECK(sum == expected);
    CHECK(FreeLibrary(library));
    Sleep(20); /* worker threads of the library would run unmapped code here */
  }

  const HMODULE library = LoadLibraryW(arguments[1]);
  Resolve(library);
  EngineContext* context = Load();
  CHECK(export_png(context, written, 8) == 0);
  destroy_context(context);
  CHECK(DeleteFileW(target)); /* the export exists under that name */
  CHECK(DeleteFileW(source));
  return 0;
}
