/* Shared by the hosts that load a library at run time. */
#ifndef LUMVIK_TESTS_WINDOWS_LOADING_H_
#define LUMVIK_TESTS_WINDOWS_LOADING_H_

#include <stdio.h>
#include <stdlib.h>
#include <windows.h>

#define ROUNDS 8
#define THREADS 4
#define CHECK(condition) \
  ((condition) ? (void)0 : (fprintf(stderr, "line %d: %s\n", __LINE__, #condition), exit(1)))

static void ToUtf8(const wchar_t* wide, char* utf8) {
  CHECK(WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8, 4 * MAX_PATH, NULL, NULL) > 0);
}

/* A path in the folder for temporary files. The code page cannot represent its name. */
static void TemporaryName(const wchar_t* extension, wchar_t* path) {
  wchar_t folder[MAX_PATH];
  CHECK(GetTempPathW(MAX_PATH, folder) > 0);
  swprintf(path, MAX_PATH, L"%ls\\\u5199\u771F \u00E9t\u00E9 %lu%ls", folder, GetCurrentProcessId(),
           extension);
}

/* Expects the same result from every thread. */
static DWORD RunInThreads(LPTHREAD_START_ROUTINE run) {
  HANDLE threads[THREADS];
  for (int i = 0; i < THREADS; ++i) {
    threads[i] = CreateThread(NULL, 0, run, NULL, 0, NULL);
    CHECK(threads[i] != NULL);
  }
  DWORD first = 0;
  for (int i = 0; i < THREADS; ++i) {
    DWORD sum = 0;
    CHECK(WaitForSingleObject(threads[i], INFINITE) == WAIT_OBJECT_0);
    CHECK(GetExitCodeThread(threads[i], &sum));
    CloseHandle(threads[i]);
    if (i == 0) first = sum;
    CHECK(sum == first);
  }
  return first;
}

#endif /* LUMVIK_TESTS_WINDOWS_LOADING_H_ */
