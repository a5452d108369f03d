#include "photo/background_load.h"

#include <chrono>

namespace lumvik::host {

void BackgroundLoad::Begin() {
  const std::lock_guard<std::mutex> guard(mutex_);
  is_running_ = true;
}

void BackgroundLoad::End(Status status, const TextBuffer& text) {
  const std::lock_guard<std::mutex> guard(mutex_);
  is_running_ = false;
  if (!is_abandoned_) {
    status_ = status;
    failure_ = text;
  }
  changed_.notify_all();
}

void BackgroundLoad::Abandon() {
  const std::lock_guard<std::mutex> guard(mutex_);
  is_abandoned_ = true;
  status_ = LUMVIK_HOST_OK;
  changed_.notify_all();
}

bool BackgroundLoad::IsWanted() const {
  const std::lock_guard<std::mutex> guard(mutex_);
  return IsWantedLocked();
}

void BackgroundLoad::Wait(int milliseconds) {
  std::unique_lock<std::mutex> lock(mutex_);
  const auto is_over = [&] { return !IsWantedLocked(); };
  if (milliseconds < 0) {
    changed_.wait(lock, is_over);
  } else if (!changed_.wait_for(lock, std::chrono::milliseconds(milliseconds), is_over)) {
    throw Failure(LUMVIK_HOST_TIMED_OUT, "the photograph is still being loaded");
  }
  if (status_ != LUMVIK_HOST_OK) throw Failure(status_, failure_.data());
}

void BackgroundLoad::WaitForEnd() {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [&] { return !is_running_; });
}

}  // namespace lumvik::host
