#include "base/large_image.h"

#include <array>
#include <atomic>

#include "base/pages.h"

namespace lumvik {
namespace {

// Smaller ones are cheap to allocate.
constexpr size_t kSmallestKept = 1 << 20;

// The freed images, without a lock: a child process made with fork() while another thread held one would
// hang.
class KeptImages {
 public:
  // One of this size in bytes, or a little larger; null if there is none.
  cv::UMatData* Take(size_t bytes) {
    for (std::atomic<cv::UMatData*>& slot : slots_) {
      cv::UMatData* image = slot.exchange(nullptr);
      if (image == nullptr) continue;
      bytes_ -= image->size;
      if (image->size >= bytes && image->size <= bytes + bytes / 4) return image;
      Put(slot, image);
    }
    return nullptr;
  }

  // Drops the oldest ones if there are too many.
  void Keep(cv::UMatData* image) {
    const unsigned newest = turn_++;
    Put(slots_[newest % kSlots], image);
    for (unsigned i = 1; i < kSlots && bytes_ > LargeImageReuse::kMostKeptBytes; ++i) {
      Drop(slots_[(newest + i) % kSlots].exchange(nullptr));
    }
  }

  void DropAll() {
    for (std::atomic<cv::UMatData*>& slot : slots_) Drop(slot.exchange(nullptr));
  }

  static void Free(cv::UMatData* image) {
    image->currAllocator = image->prevAllocator;
    image->currAllocator->deallocate(image);
  }

 private:
  // A power of two, so that the turn may wrap; more than a render of all stages has at a time.
  static constexpr unsigned kSlots = 16;

  void Put(std::atomic<cv::UMatData*>& slot, cv::UMatData* image) {
    bytes_ += image->size;
    Drop(slot.exchange(image));
  }

  void Drop(cv::UMatData* image) {
    if (image == nullptr) return;
    bytes_ -= image->size;
    Free(image);
  }

  std::array<std::atomic<cv::UMatData*>, kSlots> slots_{};
  std::atomic<unsigned> turn_{0};
  std::atomic<size_t> bytes_{0};  // in the slots
};

KeptImages kept;            // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)
std::atomic<int> users{0};  // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

class KeepingAllocator : public cv::MatAllocator {
 public:
  cv::UMatData* allocate(int dims, const int* sizes, int type, void* data, size_t* step, cv::AccessFlag flags,
                         cv::UMatUsageFlags usage) const override {
    size_t bytes = CV_ELEM_SIZE(type);
    for (int i = dims - 1; i >= 0; --i) {
      if (step != nullptr) step[i] = bytes;
      bytes *= static_cast<size_t>(sizes[i]);
    }
    if (cv::UMatData* image = kept.Take(bytes)) return image;
    cv::UMatData* image = nullptr;
    try {
      image = cv::Mat::getDefaultAllocator()->allocate(dims, sizes, type, data, step, flags, usage);
    } catch (...) {
      kept.DropAll();
      throw;  // to cv::Mat::create(), which then tries again without this allocator
    }
    PreferHugePages(image->data, image->size);
    image->currAllocator = this;
    return image;
  }

  bool allocate(cv::UMatData* image, cv::AccessFlag /*flags*/, cv::UMatUsageFlags /*usage*/) const override {
    return image != nullptr;
  }

  void deallocate(cv::UMatData* image) const override {
    if (users == 0 || image->size < kSmallestKept) {
      KeptImages::Free(image);
    } else {
      OfferPages(image->data, image->size);
      kept.Keep(image);
    }
  }
};

}  // namespace

cv::Mat LargeImage(cv::Size size, int type) {
  // Never destroyed, since images of other threads may be freed while the process ends.
  // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
  static auto* const kAllocator = new KeepingAllocator;
  cv::Mat image;
  image.allocator = kAllocator;
  image.create(size, type);
  return image;
}

LargeImageReuse::LargeImageReuse() noexcept {
  ++users;
}

LargeImageReuse::~LargeImageReuse() {
  if (--users == 0) kept.DropAll();
}

}  // namespace lumvik
