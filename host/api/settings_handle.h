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

void CloseSettings(lumvik_host_settings* handle);

// A copy of the values, so that no call ever waits for two objects at once.
Settings ValuesOf(lumvik_host_settings* handle);

// Calls `use` with the values of a handle, which it may change.
template <typename Use>
void WithSettings(lumvik_host_settings* handle, const Use& use) {
  const auto object = std::static_pointer_cast<SettingsObject>(
      FindHandle(HandleKind::kSettings, reinterpret_cast<HandleValue>(handle)));
  const std::lock_guard<TurnLock> turn(object->turn);
  use(object->values);
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_API_SETTINGS_HANDLE_H_
