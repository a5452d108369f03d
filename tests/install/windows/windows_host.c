/* Calls a library through its import library: the engine if ENGINE is defined, otherwise the host library.
   Exits with 0 if the library has the version of the header. */
#ifdef ENGINE
#include <lumvik.h>
#define VERSION() lumvik_version()
#define MAJOR LUMVIK_VERSION_MAJOR
#define MINOR LUMVIK_VERSION_MINOR
#define PATCH LUMVIK_VERSION_PATCH
#else
#include <lumvik_host.h>
#define VERSION() lumvik_host_version()
#define MAJOR LUMVIK_HOST_VERSION_MAJOR
#define MINOR LUMVIK_HOST_VERSION_MINOR
#define PATCH LUMVIK_HOST_VERSION_PATCH
#endif

#define TEXT(number) #number
#define DOTTED(major, minor, patch) TEXT(major) "." TEXT(minor) "." TEXT(patch)

__declspec(dllimport) __declspec(noreturn) void __stdcall ExitProcess(unsigned int code);

void Start(void) {
  const char* actual = VERSION();
  const char* expected = DOTTED(MAJOR, MINOR, PATCH);
  while (*actual == *expected && *actual != '\0') {
    ++actual;
    ++expected;
  }
  ExitProcess(*actual != *expected);
}
