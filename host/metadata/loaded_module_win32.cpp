#include <windows.h>

#include <array>
#include <system_error>

#include "metadata/loaded_module.h"

namespace lumvik::host {

const char kModuleFile[] = "lumvik_metadata.dll";

namespace {

constexpr DWORD kMaxPath = 32768;  // UTF-16 units

std::string LastErrorText() {
  return std::system_category().message(static_cast<int>(GetLastError()));
}

}  // namespace

std::filesystem::path LibraryFolder() {
  HMODULE library = nullptr;
  std::wstring path(kMaxPath, L'\0');
  if (GetModuleHandleExW(
          GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
          reinterpret_cast<LPCWSTR>(&LibraryFolder), &library) == 0) {
    return {};
  }
  path.resize(GetModuleFileNameW(library, path.data(), kMaxPath));
  return std::filesystem::path(path).parent_path();
}

std::optional<std::filesystem::path> UserModuleFolder() {
  std::wstring folder(kMaxPath, L'\0');
  folder.resize(GetEnvironmentVariableW(L"LUMVIK_MODULES", folder.data(), kMaxPath));
  if (folder.empty()) return std::nullopt;
  return folder;
}

void* LoadFunction(const std::filesystem::path& file, const char* name, std::string& reason) {
  // Libraries that the module needs are searched for in its folder too.
  HMODULE library = LoadLibraryExW(file.c_str(), nullptr,
                                   LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
  void* const function =
      library == nullptr ? nullptr : reinterpret_cast<void*>(GetProcAddress(library, name));
  if (function != nullptr) return function;
  reason = LastErrorText();
  if (library != nullptr) FreeLibrary(library);
  return nullptr;
}

}  // namespace lumvik::host
