/* Prints the version resource of a file, as Windows reads it. */
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>
#include <windows.h>

static void Fail(const wchar_t* what) {
  fwprintf(stderr, L"%ls: error %lu\n", what, GetLastError());
  exit(1);
}

static void* Value(const void* resource, const wchar_t* path) {
  void* value = NULL;
  UINT size = 0;
  if (!VerQueryValueW(resource, path, &value, &size) || size == 0) Fail(path);
  return value;
}

int wmain(int count, wchar_t** arguments) {
  if (count != 2) return 2;
  const DWORD size = GetFileVersionInfoSizeW(arguments[1], NULL);
  void* resource = malloc(size);
  if (size == 0 || !GetFileVersionInfoW(arguments[1], 0, size, resource)) Fail(arguments[1]);

  const VS_FIXEDFILEINFO* fixed = Value(resource, L"\\");
  const WORD* translation = Value(resource, L"\\VarFileInfo\\Translation");
  printf("%u.%u.%u.%u type %lu language %04x code page %u\n", HIWORD(fixed->dwFileVersionMS),
         LOWORD(fixed->dwFileVersionMS), HIWORD(fixed->dwFileVersionLS), LOWORD(fixed->dwFileVersionLS),
         fixed->dwFileType, translation[0], translation[1]);

  const wchar_t* const keys[] = {L"FileDescription", L"FileVersion", L"OriginalFilename", L"ProductName",
                                 L"ProductVersion"};
  for (size_t i = 0; i < sizeof(keys) / sizeof(keys[0]); ++i) {
    wchar_t path[100];
    swprintf(path, sizeof(path) / sizeof(path[0]), L"\\StringFileInfo\\%04x%04x\\%ls", translation[0],
             translation[1], keys[i]);
    printf("%ls: %ls\n", keys[i], (const wchar_t*)Value(resource, path));
  }
  free(resource);
  return 0;
}
