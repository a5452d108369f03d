/* Calls both libraries through their import libraries. Exits with 0 if they have the versions of the
   headers. */
#include <lumvik.h>
#include <lumvik_host.h>

__declspec(dllimport) __declspec(noreturn) void __stdcall ExitProcess(unsigned int code);

/* "1.0.0" for single digits. */
static int IsVersion(const char* text, int major, int minor, int patch) {
  return text[0] == '0' + major && text[1] == '.' && text[2] == '0' + minor && text[3] == '.' &&
         text[4] == '0' + patch && text[5] == '\0';
}

void Start(void) {
  if (!IsVersion(lumvik_version(), LUMVIK_VERSION_MAJOR, LUMVIK_VERSION_MINOR, LUMVIK_VERSION_PATCH))
    ExitProcess(1);
  if (!IsVersion(lumvik_host_version(), LUMVIK_HOST_VERSION_MAJOR, LUMVIK_HOST_VERSION_MINOR,
                 LUMVIK_HOST_VERSION_PATCH)) {
    ExitProcess(2);
  }
  ExitProcess(0);
}
