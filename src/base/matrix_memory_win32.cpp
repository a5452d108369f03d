#include "base/matrix_memory_win32.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <memory>
#include <mutex>
#include <opencv2/core.hpp>
#include <vector>

namespace lumvik {
namespace {

constexpr size_t kMinBytes = size_t{128} << 10;  // the heap of Windows keeps smaller blocks itself
constexpr size_t kMaxBlocks = 64;

struct Block {
  void* data;
  size_t bytes;
};

class FreedBlocks {
 public:
  FreedBlocks() { blocks_.reserve(kMaxBlocks + 1); }

  // At least `bytes`, of undefined content.
  Block Take(size_t bytes) {
    const std::lock_guard lock(mutex_);
    // The latest is the most likely to be in the cache.
    const auto found = std::find_if(blocks_.rbegin(), blocks_.rend(), [bytes](const Block& block) {
      return block.bytes >= bytes && block.bytes - bytes <= bytes / 4;
    });
    if (found == blocks_.rend()) return Allocated(bytes);
    const Block block = *found;
    blocks_.erase(std::next(found).base());
    total_ -= block.bytes;
    return block;
  }

  void Return(const Block& block) {
    if (block.bytes < kMinBytes || block.bytes > kMostKeptMatrixBytes) return cv::fastFree(block.data);
    const std::lock_guard lock(mutex_);
    blocks_.push_back(block);
    total_ += block.bytes;
    while (total_ > kMostKeptMatrixBytes || blocks_.size() > kMaxBlocks) FreeOldest();
  }

 private:
  Block Allocated(size_t bytes) {
    try {
      return {cv::fastMalloc(bytes), bytes};
    } catch (const cv::Exception&) {
      while (!blocks_.empty()) FreeOldest();
      return {cv::fastMalloc(bytes), bytes};
    }
  }

  void FreeOldest() {
    total_ -= blocks_.front().bytes;
    cv::fastFree(blocks_.front().data);
    blocks_.erase(blocks_.begin());
  }

  std::mutex mutex_;
  std::vector<Block> blocks_;  // the oldest first
  size_t total_ = 0;
};

class ReusingAllocator final : public cv::MatAllocator {
 public:
  cv::UMatData* allocate(int dims, const int* sizes, int type, void* data, size_t* step, cv::AccessFlag flags,
                         cv::UMatUsageFlags usage) const override {
    if (data != nullptr) {
      return cv::Mat::getStdAllocator()->allocate(dims, sizes, type, data, step, flags, usage);
    }
    size_t bytes = CV_ELEM_SIZE(type);
    for (int i = dims - 1; i >= 0; --i) {
      if (step != nullptr) step[i] = bytes;
      bytes *= static_cast<size_t>(sizes[i]);
    }
    auto matrix = std::make_unique<cv::UMatData>(this);
    const Block block = blocks_.Take(bytes);
    matrix->data = matrix->origdata = static_cast<uchar*>(block.data);
    matrix->size = bytes;
    matrix->userdata = reinterpret_cast<void*>(block.bytes);  // the block may be larger
    return matrix.release();
  }

  bool allocate(cv::UMatData* matrix, cv::AccessFlag /*flags*/, cv::UMatUsageFlags /*usage*/) const override {
    return matrix != nullptr;
  }

  void deallocate(cv::UMatData* matrix) const override {
    if (matrix == nullptr) return;
    blocks_.Return({matrix->origdata, reinterpret_cast<size_t>(matrix->userdata)});
    delete matrix;
  }

 private:
  mutable FreedBlocks blocks_;
};

}  // namespace

void KeepMatrixMemory() {
  // Never destroyed, since static objects may hold matrices.
  // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
  static auto* const kAllocator = new ReusingAllocator;
  cv::Mat::setDefaultAllocator(kAllocator);
}

}  // namespace lumvik
