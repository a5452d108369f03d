// The objects of settings handles.
#ifndef LUMVIK_HOST_API_SETTINGS_HANDLE_H_
#define LUMVIK_HOST_API_SETTINGS_HANDLE_H_

#include <mutex>

#include "api/registry.h"
#include "base/turn_lock.h"
#include "lumvik_host.h"
#include "settings/settings.h"

namespace lumvik::host {

struct SettingsObject {
  TurnLock turn;
  Settings values;
};

// Each function throws Failure.

lumvik_host_settings* OpenSettings(Settings values);

// A copy of the values, so that no call ever waits for two objects at once.
Settings ValuesOf(lumvik_host_settings* handle);

// Calls `change` with the values of a handle.
template <typename Change>
void ChangeSettings(lumvik_host_settings* handle, const Change& change) {
  const auto object = std::static_pointer_cast<SettingsObject>(
      FindHandle(HandleKind::kSettings, reinterpret_cast<HandleValue>(handle)));
  const std::lock_guard<TurnLock> turn(object->turn);
  change(object->values);
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_API_SETTINGS_HANDLE_H_
