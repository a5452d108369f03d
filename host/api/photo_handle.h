// The objects of photo handles, and the frame of all functions on photos.
#ifndef LUMVIK_HOST_API_PHOTO_HANDLE_H_
#define LUMVIK_HOST_API_PHOTO_HANDLE_H_

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

#include "api/guard.h"
#include "base/text_cut.h"
#include "base/turn_lock.h"
#include "lumvik_host.h"
#include "photo/background_load.h"
#include "photo/current_settings.h"
#include "photo/frame.h"
#include "photo/photo.h"
#include "photo/render_queue.h"

namespace lumvik::host {

// The text of the latest failure. For any thread.
class ErrorText {
 public:
  void Set(const char* text) noexcept;
  TextBuffer Get() const;

 private:
  mutable std::mutex mutex_;
  TextBuffer text_{};
};

struct PhotoObject {
  explicit PhotoObject(std::unique_ptr<PhotoSource> source, const lumvik_host_open_options& options)
      : photo(std::move(source), options) {}

  std::atomic<bool> is_closed{false};
  ErrorText error;
  CurrentSettings settings;
  // Shared with the threads that use them, which may be the last to release the photo.
  std::shared_ptr<RenderQueue> renders = std::make_shared<RenderQueue>();
  std::shared_ptr<BackgroundLoad> load = std::make_shared<BackgroundLoad>();

  TurnLock turn;  // for the rest
  Photo photo;
  FrameMemory previews;
};

// Each function throws Failure.
lumvik_host_photo* OpenPhoto(std::shared_ptr<PhotoObject> object);
std::shared_ptr<PhotoObject> FindPhoto(lumvik_host_photo* handle);
// Lets running calls end. Waiting ones find the photo closed.
void ClosePhoto(lumvik_host_photo* handle);

// Throws Failure for a photo that was closed while the call waited.
void RequireOpen(const PhotoObject& object);

// Runs the body of an exported function on a photo at once. A failure becomes that of the photo.
template <typename Call>
Status WithPhotoAtOnce(lumvik_host_photo* handle, const Call& call) noexcept {
  return Guarded([&] {
    const std::shared_ptr<PhotoObject> object = FindPhoto(handle);
    try {
      call(object);
    } catch (...) {
      ReportException();
      object->error.Set(ThreadText());
      throw;
    }
  });
}

// Runs it after the calls that arrived earlier, with the settings of now.
template <typename Call>
Status WithPhotoObject(lumvik_host_photo* handle, const Call& call) noexcept {
  return WithPhotoAtOnce(handle, [&](const std::shared_ptr<PhotoObject>& object) {
    std::shared_ptr<const Settings> settings = object->settings.Get();
    const std::lock_guard<TurnLock> turn(object->turn);
    RequireOpen(*object);
    object->photo.UseSettings(std::move(settings));
    call(object);
  });
}

template <typename Call>
Status WithPhoto(lumvik_host_photo* handle, const Call& call) noexcept {
  return WithPhotoObject(handle, [&](const std::shared_ptr<PhotoObject>& object) { call(object->photo); });
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_API_PHOTO_HANDLE_H_
