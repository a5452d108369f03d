// The objects of photo handles, and the frame of all functions on photos.
#ifndef LUMVIK_HOST_API_PHOTO_HANDLE_H_
#define LUMVIK_HOST_API_PHOTO_HANDLE_H_

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

#include "api/guard.h"
#include "base/turn_lock.h"
#include "lumvik_host.h"
#include "photo/photo.h"

namespace lumvik::host {

struct PhotoObject {
  explicit PhotoObject(std::unique_ptr<PhotoSource> source, const lumvik_host_open_options& options)
      : photo(std::move(source), options) {}

  TurnLock turn;
  std::atomic<bool> is_closed{false};
  TextBuffer error{};  // of the latest failure
  Photo photo;
};

// Each function throws Failure.
lumvik_host_photo* OpenPhoto(std::shared_ptr<PhotoObject> object);
std::shared_ptr<PhotoObject> FindPhoto(lumvik_host_photo* handle);
// Lets running calls end. Waiting ones find the photo closed.
void ClosePhoto(lumvik_host_photo* handle);

// Throws Failure for a photo that was closed while the call waited.
void RequireOpen(const PhotoObject& object);

// Keeps the text of the calling thread as that of the photo.
void RecordError(PhotoObject& object) noexcept;

// Runs the body of an exported function on a photo, after those called earlier.
template <typename Call>
Status WithPhotoObject(lumvik_host_photo* handle, const Call& call) noexcept {
  return Guarded([&] {
    const std::shared_ptr<PhotoObject> object = FindPhoto(handle);
    const std::lock_guard<TurnLock> turn(object->turn);
    RequireOpen(*object);
    try {
      call(*object);
    } catch (...) {
      ReportException();
      RecordError(*object);
      throw;
    }
  });
}

template <typename Call>
Status WithPhoto(lumvik_host_photo* handle, const Call& call) noexcept {
  return WithPhotoObject(handle, [&](PhotoObject& object) { call(object.photo); });
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_API_PHOTO_HANDLE_H_
