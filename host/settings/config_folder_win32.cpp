#include <cstdlib>

#include "base/failure.h"
#include "settings/config_folder.h"

namespace lumvik::host {

std::filesystem::path ConfigFolder() {
  const wchar_t* value = _wgetenv(L"APPDATA");
  if (value == nullptr || *value == L'\0') {
    throw Failure(LUMVIK_HOST_NOT_FOUND, "there is no folder for configuration: APPDATA is not set");
  }
  return value;
}

}  // namespace lumvik::host
