// The settings of a photo, which can be read and replaced while it is being rendered.
#ifndef LUMVIK_HOST_PHOTO_CURRENT_SETTINGS_H_
#define LUMVIK_HOST_PHOTO_CURRENT_SETTINGS_H_

#include <memory>
#include <mutex>
#include <utility>

#include "settings/settings.h"

namespace lumvik::host {

class CurrentSettings {
 public:
  std::shared_ptr<const Settings> Get() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return settings_;
  }

  void Set(std::shared_ptr<const Settings> settings) {
    const std::lock_guard<std::mutex> guard(mutex_);
    settings_.swap(settings);
  }

 private:
  mutable std::mutex mutex_;
  std::shared_ptr<const Settings> settings_ = std::make_shared<const Settings>();
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_CURRENT_SETTINGS_H_
