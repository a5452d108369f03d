// Keeps the library in memory once it is loaded. OpenCV's worker threads outlive the calls they work for and
// nothing ends them: after a FreeLibrary they would wake in code that is gone.
#include <windows.h>

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  HMODULE pinned = nullptr;
  return ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                              reinterpret_cast<LPCWSTR>(module), &pinned);
}
