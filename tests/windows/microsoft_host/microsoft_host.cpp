// A host built for Microsoft's ABI, as Visual Studio builds it: misuses of the host library give statuses and
// texts, and no exception reaches the host. GCC's exceptions do not unwind through its frames: neither a
// handler of structured exceptions nor catch (...) ever returns, so the first one that arrives ends the
// process.
//
//   microsoft_host RAW_FILE DAMAGED_RAW_FILE           the misuses
//   microsoft_host RAW_FILE DAMAGED_RAW_FILE engine    a call of lumvik.dll, whose functions throw
#include "failing_allocations.h"
#include "lumvik_host.h"
#include "windows_functions.h"

[[noreturn]] static void End(unsigned status) {
  fflush(nullptr);
  TerminateProcess(GetCurrentProcess(), status);
  __builtin_unreachable();
}

// Parts of the C runtime.
extern "C" int _fltused = 0;
extern "C" void __std_terminate() {
  End(1);
}

namespace {

using Status = lumvik_host_status;
using Call = Status (*)();

constexpr Dword kGccException = 0x20474343;
constexpr size_t kPathSize = 2048;

char raw_file[kPathSize];
char damaged_file[kPathSize];
char folder[kPathSize];
char large_file[kPathSize];  // more than the memory
char huge_file[kPathSize];   // claims to be
lumvik_host_photo* photo;
lumvik_host_settings* settings;
const char* running = "";
Dword main_thread;
long thrown;
long thrown_in_workers;

// Sees exceptions when they are thrown, also those that the library catches itself.
long CountException(ExceptionPointers* exception) {
  if (exception->record->code == kGccException) {
    __sync_fetch_and_add(GetCurrentThreadId() == main_thread ? &thrown : &thrown_in_workers, 1);
  }
  return 0;  // continue the search
}

// The filter of a handler runs when no frame of the library handles the exception.
[[noreturn]] int FailOnArrival(unsigned long code) {
  printf("%s: exception %lx reached the host\n", running, code);
  End(1);
}

Status UnderStructuredHandler(Call call) {
  __try {
    return call();
  } __except (FailOnArrival(_exception_code())) {
    return LUMVIK_HOST_INTERNAL;
  }
}

Status UnderHandlers(const char* what, Call call) {
  running = what;
  try {
    return UnderStructuredHandler(call);
  } catch (...) {
    FailOnArrival(0);
    return LUMVIK_HOST_INTERNAL;
  }
}

void ToUtf8(const wchar_t* wide, char* utf8) {
  WideCharToMultiByte(kUtf8, 0, wide, -1, utf8, static_cast<int>(kPathSize), nullptr, nullptr);
}

// A bitmap whose pixels are a hole in the file, or missing.
bool WriteBitmap(const wchar_t* path, uint32_t width, uint32_t height, bool has_pixels) {
  unsigned char header[54] = {'B', 'M'};
  const auto put = [&](size_t at, uint32_t value) {
    for (size_t i = 0; i < 4; ++i) header[at + i] = static_cast<unsigned char>(value >> (8 * i));
  };
  put(10, sizeof(header));
  put(14, 40);
  put(18, width);
  put(22, height);
  header[26] = 1;
  header[28] = 24;
  const Handle file = CreateFileW(path, kGenericWrite, 0, nullptr, kCreateAlways, 0, nullptr);
  Dword written = 0;
  bool succeeded = WriteFile(file, header, sizeof(header), &written, nullptr) != 0;
  if (has_pixels) {
    succeeded = succeeded && SetFilePointerEx(file, int64_t{3} * width * height, nullptr, 1) != 0 &&
                SetEndOfFile(file) != 0;
  }
  return CloseHandle(file) != 0 && succeeded;
}

Status OpenAndClose(const char* path) {
  lumvik_host_photo* other = nullptr;
  const Status status = lumvik_host_open(path, nullptr, &other);
  lumvik_host_close(other);
  return status;
}

Status NullPath() {
  return OpenAndClose(nullptr);
}
Status NullOutput() {
  return lumvik_host_settings_create(nullptr);
}
Status NullHandle() {
  return lumvik_host_render(nullptr);
}
Status MadeUpHandle() {
  return lumvik_host_render(reinterpret_cast<lumvik_host_photo*>(raw_file));
}
Status HandleOfAnotherKind() {
  return lumvik_host_render(reinterpret_cast<lumvik_host_photo*>(settings));
}

Status ClosedHandle() {
  lumvik_host_settings* closed = nullptr;
  lumvik_host_settings_create(&closed);
  lumvik_host_settings_close(closed);
  return lumvik_host_settings_clear(closed);
}

Status NoStructSize() {
  lumvik_host_photo_info info{};
  return lumvik_host_get_info(photo, &info);
}

Status SmallBuffer() {
  unsigned char pixel[4];
  return lumvik_host_get_preview(photo, nullptr, pixel, sizeof(pixel), nullptr, nullptr);
}

Status NotANumber() {
  return lumvik_host_settings_set_number(settings, "exposure", __builtin_nanf(""));
}
Status UnknownSetting() {
  return lumvik_host_settings_set_number(settings, "exposition", 1);
}
Status MissingFile() {
  return OpenAndClose("missing.arw");
}
Status AFolder() {
  return OpenAndClose(folder);
}
Status NameThatIsNotUtf8() {
  return OpenAndClose("\xFF.arw");
}
Status CheckOfADamagedFile() {
  lumvik_host_integrity integrity{};
  integrity.struct_size = sizeof(integrity);
  return lumvik_host_check_file(damaged_file, &integrity);
}
Status HugeClaim() {
  return OpenAndClose(huge_file);
}
Status UnknownExtension() {
  return lumvik_host_save(photo, "out.xyz", nullptr);
}

Status OutOfMemory() {
  const FailingAllocations failing;
  return OpenAndClose(large_file);
}

Status OutOfMemoryInAWorker() {
  lumvik_host_photo* large = nullptr;
  Status status = lumvik_host_open(large_file, nullptr, &large);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_set_settings(large, settings);
  // The worker starts with enough memory.
  lumvik_host_preview_options small{};
  small.struct_size = sizeof(small);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_post(large, settings, &small, nullptr, nullptr, nullptr);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_wait(large, 0, -1);
  if (status == LUMVIK_HOST_OK) {
    lumvik_host_settings_set_number(settings, "clarity", 50);
    const FailingAllocations failing;
    lumvik_host_post(large, settings, nullptr, nullptr, nullptr, nullptr);
    status = lumvik_host_wait(large, 0, -1);
  }
  lumvik_host_close(large);
  return status;
}

struct Misuse {
  const char* what;
  Call call;
  Status expected;
  const char* text;  // part of the text of the failure
};

const Misuse kMisuses[] = {
    {"a null path", NullPath, LUMVIK_HOST_INVALID_ARGUMENT, "path is null"},
    {"a null output", NullOutput, LUMVIK_HOST_INVALID_ARGUMENT, "settings is null"},
    {"a null handle", NullHandle, LUMVIK_HOST_INVALID_HANDLE, "the photo is null"},
    {"a made-up handle", MadeUpHandle, LUMVIK_HOST_INVALID_HANDLE, "the photo is closed or was never open"},
    {"a handle of another kind", HandleOfAnotherKind, LUMVIK_HOST_INVALID_HANDLE,
     "the photo is closed or was never open"},
    {"a closed handle", ClosedHandle, LUMVIK_HOST_INVALID_HANDLE,
     "the settings object is closed or was never open"},
    {"a struct without its size", NoStructSize, LUMVIK_HOST_INVALID_ARGUMENT, "struct_size is 0"},
    {"a buffer that is too small", SmallBuffer, LUMVIK_HOST_BUFFER_TOO_SMALL, "bytes"},
    {"a setting that is NaN", NotANumber, LUMVIK_HOST_INVALID_ARGUMENT, "exposure"},
    {"an unknown setting", UnknownSetting, LUMVIK_HOST_INVALID_ARGUMENT, "exposition"},
    {"a missing file", MissingFile, LUMVIK_HOST_NOT_FOUND, "there is no such file"},
    {"a folder", AFolder, LUMVIK_HOST_INVALID_ARGUMENT, "it is a folder"},
    {"a path that is not UTF-8", NameThatIsNotUtf8, LUMVIK_HOST_INVALID_ARGUMENT, "not UTF-8"},
    {"the check of a damaged file", CheckOfADamagedFile, LUMVIK_HOST_DAMAGED, ""},
    {"a file that claims a huge image", HugeClaim, LUMVIK_HOST_DAMAGED, "its image data cannot be decoded"},
    {"an unknown extension", UnknownExtension, LUMVIK_HOST_INVALID_ARGUMENT, "xyz"},
};

// These need the process for themselves.
const Misuse kMisusesOfMemory[] = {
    {"running out of memory", OutOfMemory, LUMVIK_HOST_OUT_OF_MEMORY, "not enough memory"},
    {"running out of memory in a worker thread", OutOfMemoryInAWorker, LUMVIK_HOST_OUT_OF_MEMORY,
     "not enough memory"},
};

template <size_t kCount>
Dword CountWrong(const Misuse (&misuses)[kCount]) {
  Dword wrong = 0;
  for (const Misuse& misuse : misuses) {
    const Status status = UnderHandlers(misuse.what, misuse.call);
    const char* const text = lumvik_host_last_error();
    if (status == misuse.expected && strstr(text, misuse.text) != nullptr) continue;
    printf("%s: %s, \"%s\"; expected %s, \"%s\"\n", misuse.what, lumvik_host_status_name(status), text,
           lumvik_host_status_name(misuse.expected), misuse.text);
    ++wrong;
  }
  return wrong;
}

Dword MisuseInAThread(void*) {
  return CountWrong(kMisuses);
}

Dword MisuseInTwoThreads() {
  const Handle thread = CreateThread(nullptr, 0, MisuseInAThread, nullptr, 0, nullptr);
  const Dword wrong = CountWrong(kMisuses);
  Dword others = 1;
  WaitForSingleObject(thread, kForever);
  GetExitCodeThread(thread, &others);
  CloseHandle(thread);
  return wrong + others;
}

Status LoadWithEngine() {
  const Handle engine = GetModuleHandleW(L"lumvik.dll");
  auto* const create = reinterpret_cast<void* (*)()>(GetProcAddress(engine, "lumvik_create_context"));
  auto* const load =
      reinterpret_cast<int (*)(void*, const char*, int)>(GetProcAddress(engine, "lumvik_load_arw"));
  void* const context = create();
  const FailingAllocations failing;
  load(context, large_file, 1);
  return LUMVIK_HOST_OK;
}

// A file in the folder for temporary files, whose name the code page cannot represent.
class TemporaryBitmap {
 public:
  TemporaryBitmap(const wchar_t* name, uint32_t width, uint32_t height, bool has_pixels, char* utf8) {
    size_t end = GetTempPathW(static_cast<Dword>(kPathSize / 2), path_);
    do path_[end++] = *name;
    while (*name++ != 0);
    ToUtf8(path_, utf8);
    is_written_ = WriteBitmap(path_, width, height, has_pixels);
  }
  ~TemporaryBitmap() { DeleteFileW(path_); }
  TemporaryBitmap(const TemporaryBitmap&) = delete;
  TemporaryBitmap& operator=(const TemporaryBitmap&) = delete;

  bool IsWritten() const { return is_written_; }

 private:
  wchar_t path_[kPathSize];
  bool is_written_;
};

int Run(int count, wchar_t** arguments) {
  if (count < 3) return 1;
  main_thread = GetCurrentThreadId();
  AddVectoredExceptionHandler(1, CountException);
  ToUtf8(arguments[1], raw_file);
  ToUtf8(arguments[2], damaged_file);
  wchar_t temporary[kPathSize];
  GetTempPathW(static_cast<Dword>(kPathSize), temporary);
  ToUtf8(temporary, folder);
  const TemporaryBitmap large(L"\u5199\u771F \u00E9t\u00E9.bmp", 4000, 3000, true, large_file);
  const TemporaryBitmap huge(L"huge.bmp", 60000, 60000, false, huge_file);
  if (!large.IsWritten() || !huge.IsWritten()) return 1;
  if (count == 4) {
    UnderHandlers("the engine", LoadWithEngine);
    printf("no exception reached the host\n");
    return 0;
  }
  if (lumvik_host_open(raw_file, nullptr, &photo) != LUMVIK_HOST_OK ||
      lumvik_host_settings_create(&settings) != LUMVIK_HOST_OK) {
    printf("%s\n", lumvik_host_last_error());
    return 1;
  }
  Dword wrong = MisuseInTwoThreads();
  thrown_in_workers = 0;  // from here on only the library's own threads
  wrong += CountWrong(kMisusesOfMemory);
  if (lumvik_host_render(photo) != LUMVIK_HOST_OK) {
    printf("the photo is not of use afterwards: %s\n", lumvik_host_last_error());
    ++wrong;
  }
  if (thrown == 0 || thrown_in_workers == 0) {
    printf("nothing is shown: the library threw nothing, or nothing in its worker threads\n");
    ++wrong;
  }
  lumvik_host_settings_close(settings);
  lumvik_host_close(photo);
  printf("%ld exceptions in the calling thread and %ld in worker threads stayed in the library, %lu wrong\n",
         thrown, thrown_in_workers, wrong);
  return wrong == 0 ? 0 : 1;
}

}  // namespace

extern "C" void Start() {
  int count = 0;
  wchar_t** const arguments = CommandLineToArgvW(GetCommandLineW(), &count);
  End(static_cast<unsigned>(Run(count, arguments)));
}
