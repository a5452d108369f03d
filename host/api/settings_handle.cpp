#include "api/settings_handle.h"

#include <memory>
#include <utility>

namespace lumvik::host {

lumvik_host_settings* OpenSettings(Settings values) {
  auto object = std::make_shared<SettingsObject>();
  object->values = std::move(values);
  // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle is never dereferenced
  return reinterpret_cast<lumvik_host_settings*>(OpenHandle(HandleKind::kSettings, std::move(object)));
}

void CloseSettings(lumvik_host_settings* handle) {
  CloseHandle(HandleKind::kSettings, reinterpret_cast<HandleValue>(handle));
}

Settings ValuesOf(lumvik_host_settings* handle) {
  Settings values;
  WithSettings(handle, [&](const Settings& held) { values = held; });
  return values;
}

}  // namespace lumvik::host
