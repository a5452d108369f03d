// What a host built for Microsoft's ABI calls of Windows and of the C runtime, whose own headers cannot be
// had here.
#ifndef LUMVIK_TESTS_WINDOWS_MICROSOFT_HOST_WINDOWS_FUNCTIONS_H_
#define LUMVIK_TESTS_WINDOWS_MICROSOFT_HOST_WINDOWS_FUNCTIONS_H_

#include <stddef.h>
#include <stdint.h>

using Handle = void*;
using Dword = unsigned long;

struct ExceptionRecord {
  Dword code;
};

struct ExceptionPointers {
  ExceptionRecord* record;
};

enum : Dword {
  kGenericWrite = 0x40000000,
  kCreateAlways = 2,
  kForever = 0xFFFFFFFF,
  kReadWrite = 4,
  kUtf8 = 65001,
};

extern "C" {
// KERNEL32.dll
__declspec(dllimport) void* AddVectoredExceptionHandler(Dword first, long (*handler)(ExceptionPointers*));
__declspec(dllimport) int CloseHandle(Handle handle);
__declspec(dllimport) Handle CreateFileW(const wchar_t* path, Dword access, Dword share, void* security,
                                         Dword how, Dword flags, Handle pattern);
__declspec(dllimport) Handle
    CreateThread(void* security, size_t stack, Dword (*start)(void*), void* argument, Dword flags, Dword* id);
__declspec(dllimport) int DeleteFileW(const wchar_t* path);
__declspec(dllimport) wchar_t* GetCommandLineW();
__declspec(dllimport) Handle GetCurrentProcess();
__declspec(dllimport) Dword GetCurrentThreadId();
__declspec(dllimport) int GetExitCodeThread(Handle thread, Dword* code);
__declspec(dllimport) void* GetProcAddress(Handle library, const char* name);
__declspec(dllimport) Dword GetTempPathW(Dword capacity, wchar_t* path);
__declspec(dllimport) Handle GetModuleHandleW(const wchar_t* name);
__declspec(dllimport) int SetEndOfFile(Handle file);
__declspec(dllimport) int SetFilePointerEx(Handle file, int64_t distance, int64_t* position, Dword from);
__declspec(dllimport) int TerminateProcess(Handle process, unsigned code);
__declspec(dllimport) int VirtualProtect(void* address, size_t size, Dword protection, Dword* previous);
__declspec(dllimport) Dword WaitForSingleObject(Handle handle, Dword milliseconds);
__declspec(dllimport) int WideCharToMultiByte(unsigned page, Dword flags, const wchar_t* wide, int count,
                                              char* text, int capacity, const char* substitute,
                                              int* substituted);
__declspec(dllimport) int WriteFile(Handle file, const void* bytes, Dword count, Dword* written,
                                    void* overlapped);
// SHELL32.dll
__declspec(dllimport) wchar_t** CommandLineToArgvW(const wchar_t* line, int* count);
// msvcrt.dll
void* _aligned_malloc(size_t size, size_t alignment);
void* calloc(size_t count, size_t size);
int fflush(void* file);
void* malloc(size_t size);
int printf(const char* format, ...);
int strcmp(const char* first, const char* second);
char* strstr(const char* text, const char* part);
}

#endif  // LUMVIK_TESTS_WINDOWS_MICROSOFT_HOST_WINDOWS_FUNCTIONS_H_
