#include "photo/frame.h"

#include <mutex>
#include <utility>

namespace lumvik::host {

struct FrameMemory::Spare {
  std::mutex mutex;
  std::unique_ptr<Frame> frame;
};

std::shared_ptr<Frame> FrameMemory::Take(std::size_t bytes) {
  if (!spare_) spare_ = std::make_shared<Spare>();
  std::unique_ptr<Frame> frame;
  {
    const std::lock_guard<std::mutex> guard(spare_->mutex);
    frame = std::move(spare_->frame);
  }
  if (!frame || frame->capacity < bytes) {
    frame = nullptr;  // releases memory before more is allocated
    frame = std::make_unique<Frame>();
    frame->pixels = std::unique_ptr<std::uint8_t[]>(new std::uint8_t[bytes]);
    frame->capacity = bytes;
  }
  const auto give_back = [spare = spare_](Frame* released) {
    std::unique_ptr<Frame> owned(released);
    const std::lock_guard<std::mutex> guard(spare->mutex);
    spare->frame.swap(owned);
  };
  return {frame.release(), give_back};
}

}  // namespace lumvik::host
