// Initializes the DLL and pins it in memory. The worker threads of OpenCV and of the host library outlive the
// calls that started them and are never joined: after FreeLibrary they would run unmapped code.
#include <windows.h>

#include "base/matrix_memory_win32.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
  if (reason != DLL_PROCESS_ATTACH) return TRUE;
  lumvik::KeepMatrixMemory();
  HMODULE pinned = nullptr;
  return ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                              reinterpret_cast<LPCWSTR>(module), &pinned);
}
