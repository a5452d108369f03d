// The memory that matrices take.
#ifndef LUMVIK_TESTS_SUPPORT_COUNTING_ALLOCATOR_H_
#define LUMVIK_TESTS_SUPPORT_COUNTING_ALLOCATOR_H_

#include <atomic>
#include <opencv2/core.hpp>

namespace lumvik::test {

// During its lifetime, tracks the bytes of all live matrices, and their peak.
class CountingAllocator : public cv::MatAllocator {
 public:
  CountingAllocator() : before_(cv::Mat::getDefaultAllocator()) { cv::Mat::setDefaultAllocator(this); }
  ~CountingAllocator() override { cv::Mat::setDefaultAllocator(before_); }
  CountingAllocator(const CountingAllocator&) = delete;
  CountingAllocator& operator=(const CountingAllocator&) = delete;

  cv::UMatData* allocate(int dims, const int* sizes, int type, void* data, size_t* step, cv::AccessFlag flags,
                         cv::UMatUsageFlags usage) const override {
    cv::UMatData* matrix = cv::Mat::getStdAllocator()->allocate(dims, sizes, type, data, step, flags, usage);
    matrix->currAllocator = matrix->prevAllocator = this;
    const size_t living = living_ += matrix->size;
    size_t peak = peak_;
    while (peak < living && !peak_.compare_exchange_weak(peak, living)) {
    }
    return matrix;
  }
  bool allocate(cv::UMatData* matrix, cv::AccessFlag flags, cv::UMatUsageFlags usage) const override {
    return cv::Mat::getStdAllocator()->allocate(matrix, flags, usage);
  }
  void deallocate(cv::UMatData* matrix) const override {
    living_ -= matrix->size;
    cv::Mat::getStdAllocator()->deallocate(matrix);
  }

  size_t Living() const { return living_; }
  size_t Peak() const { return peak_; }

 private:
  cv::MatAllocator* before_;
  mutable std::atomic<size_t> living_{0};
  mutable std::atomic<size_t> peak_{0};
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_COUNTING_ALLOCATOR_H_
