// Settings objects and their values.
#include <algorithm>

#include "api/arguments.h"
#include "api/guard.h"
#include "api/settings_handle.h"
#include "lumvik_host.h"
#include "settings/settings.h"

using namespace lumvik::host;

lumvik_host_status lumvik_host_settings_create(lumvik_host_settings** settings) {
  return Guarded([&] {
    RequireArgument(settings, "settings");
    *settings = OpenSettings({});
  });
}

lumvik_host_status lumvik_host_settings_copy(lumvik_host_settings* settings, lumvik_host_settings** copy) {
  return Guarded([&] {
    RequireArgument(copy, "copy");
    *copy = OpenSettings(ValuesOf(settings));
  });
}

lumvik_host_status lumvik_host_settings_close(lumvik_host_settings* settings) {
  return Guarded([&] {
    if (settings != nullptr) CloseSettings(settings);
  });
}

lumvik_host_status lumvik_host_settings_clear(lumvik_host_settings* settings) {
  return Guarded([&] { WithSettings(settings, [](Settings& held) { held.clear(); }); });
}

lumvik_host_status lumvik_host_settings_set_engine_values(lumvik_host_settings* settings) {
  return Guarded([&] { WithSettings(settings, [](Settings& held) { held = EngineSettings(); }); });
}

lumvik_host_status lumvik_host_settings_has(lumvik_host_settings* settings, const char* key, int32_t* has) {
  return Guarded([&] {
    RequireArgument(key, "key");
    RequireArgument(has, "has");
    WithSettings(settings,
                 [&](const Settings& held) { *has = held.count(RequireSetting(key).key) != 0 ? 1 : 0; });
  });
}

lumvik_host_status lumvik_host_settings_remove(lumvik_host_settings* settings, const char* key) {
  return Guarded([&] {
    RequireArgument(key, "key");
    WithSettings(settings, [&](Settings& held) { held.erase(RequireSetting(key).key); });
  });
}

lumvik_host_status lumvik_host_settings_set_number(lumvik_host_settings* settings, const char* key,
                                                   float value) {
  return Guarded([&] {
    RequireArgument(key, "key");
    WithSettings(settings, [&](Settings& held) { SetNumber(&held, key, value); });
  });
}

lumvik_host_status lumvik_host_settings_get_number(lumvik_host_settings* settings, const char* key,
                                                   float* value) {
  return Guarded([&] {
    RequireArgument(key, "key");
    RequireArgument(value, "value");
    WithSettings(settings, [&](const Settings& held) { *value = ValueOf<float>(held, key); });
  });
}

lumvik_host_status lumvik_host_settings_set_flag(lumvik_host_settings* settings, const char* key,
                                                 int32_t value) {
  return Guarded([&] {
    RequireArgument(key, "key");
    WithSettings(settings, [&](Settings& held) { SetFlag(&held, key, value != 0); });
  });
}

lumvik_host_status lumvik_host_settings_get_flag(lumvik_host_settings* settings, const char* key,
                                                 int32_t* value) {
  return Guarded([&] {
    RequireArgument(key, "key");
    RequireArgument(value, "value");
    WithSettings(settings, [&](const Settings& held) { *value = ValueOf<bool>(held, key) ? 1 : 0; });
  });
}

lumvik_host_status lumvik_host_settings_set_curve(lumvik_host_settings* settings, const char* key,
                                                  const float* points, size_t count) {
  return Guarded([&] {
    RequireArgument(key, "key");
    if (count > 0) RequireArgument(points, "points");
    WithSettings(settings, [&](Settings& held) { SetCurve(&held, key, points, count); });
  });
}

lumvik_host_status lumvik_host_settings_get_curve(lumvik_host_settings* settings, const char* key,
                                                  float* points, size_t capacity, size_t* count) {
  return Guarded([&] {
    RequireArgument(key, "key");
    RequireArgument(count, "count");
    if (capacity > 0) RequireArgument(points, "points");
    const auto curve = ValueOf<ToneCurve>(ValuesOf(settings), key);
    *count = curve.size();
    if (curve.size() > capacity) {
      throw Failure(LUMVIK_HOST_BUFFER_TOO_SMALL, "the curve has " + std::to_string(curve.size()) +
                                                      " points, more than " + std::to_string(capacity));
    }
    for (const auto& point : curve) points = std::copy(point.begin(), point.end(), points);
  });
}

lumvik_host_status lumvik_host_settings_merge(lumvik_host_settings* settings, lumvik_host_settings* other) {
  return Guarded([&] {
    Settings taken = ValuesOf(other);
    WithSettings(settings, [&](Settings& held) {
      taken.merge(held);
      held.swap(taken);
    });
  });
}

lumvik_host_status lumvik_host_settings_remove_neutral(lumvik_host_settings* settings) {
  return Guarded([&] { WithSettings(settings, [](Settings& held) { RemoveNeutral(&held); }); });
}

lumvik_host_status lumvik_host_settings_equal(lumvik_host_settings* settings, lumvik_host_settings* other,
                                              int32_t* equal) {
  return Guarded([&] {
    RequireArgument(equal, "equal");
    *equal = Completed(ValuesOf(settings)) == Completed(ValuesOf(other)) ? 1 : 0;
  });
}
