#include "api/photo_handle.h"

#include "api/registry.h"

namespace lumvik::host {
namespace {

HandleValue HandleValueOf(lumvik_host_photo* handle) {
  return reinterpret_cast<HandleValue>(handle);
}

}  // namespace

void ErrorText::Set(const char* text) noexcept {
  const std::lock_guard<std::mutex> guard(mutex_);
  CopyCut(text, text_.data(), text_.size());
}

TextBuffer ErrorText::Get() const {
  const std::lock_guard<std::mutex> guard(mutex_);
  return text_;
}

lumvik_host_photo* OpenPhoto(std::shared_ptr<PhotoObject> object) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): a handle is never dereferenced
  return reinterpret_cast<lumvik_host_photo*>(OpenHandle(HandleKind::kPhoto, std::move(object)));
}

std::shared_ptr<PhotoObject> FindPhoto(lumvik_host_photo* handle) {
  return std::static_pointer_cast<PhotoObject>(FindHandle(HandleKind::kPhoto, HandleValueOf(handle)));
}

void ClosePhoto(lumvik_host_photo* handle) {
  const auto object =
      std::static_pointer_cast<PhotoObject>(CloseHandle(HandleKind::kPhoto, HandleValueOf(handle)));
  object->is_closed = true;
  object->load->Abandon();
  object->renders->Close();
  object->load->WaitForEnd();
  const std::lock_guard<TurnLock> turn(object->turn);
}

void RequireOpen(const PhotoObject& object) {
  if (object.is_closed) throw Failure(LUMVIK_HOST_INVALID_HANDLE, "the photo was closed by another thread");
}

}  // namespace lumvik::host
