#include "pipeline/largest_values.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <mutex>
#include <opencv2/core/utility.hpp>

#include "base/vectorized.h"

namespace lumvik {
namespace {

// Values that are compared together.
constexpr int kValuesPerBlock = 256;

// A plane that grows brighter downward would bring nothing but larger values, row after row. In steps of this
// many rows, all but the first few bring hardly any.
constexpr int kRowStep = 16;

bool HoldsOneFrom(float bound, const float* values, int count) {
  int found = 0;
  Vectorized([=, &found] {
    int own_found = 0;
    for (int i = 0; i < count; ++i) own_found |= static_cast<int>(values[i] >= bound);
    found = own_found;
  });
  return found != 0;
}

}  // namespace

void LargestValues::Add(const float* values, int count) {
  for (int first = 0; first < count; first += kValuesPerBlock) {
    const int last = std::min(first + kValuesPerBlock, count);
    if (!HoldsOneFrom(smallest_wanted_, values + first, last - first)) continue;
    for (int i = first; i < last; ++i) Add(values[i]);
  }
}

void LargestValues::Add(float value) {
  if (!(value >= smallest_wanted_)) return;
  values_.push_back(value);
  if (values_.size() == 2 * count_) DropSmallest();
}

void LargestValues::Add(const LargestValues& other) {
  for (const float value : other.values_) Add(value);
}

// Values equal to the last one kept are no longer wanted, so that uniform areas cost nothing.
void LargestValues::DropSmallest() {
  const auto last = values_.begin() + static_cast<std::ptrdiff_t>(count_) - 1;
  std::nth_element(values_.begin(), last, values_.end(), std::greater<>());
  smallest_wanted_ = std::nextafter(*last, std::numeric_limits<float>::infinity());
  values_.resize(count_);
}

std::vector<float> LargestValues::Sorted() const {
  std::vector<float> sorted = values_;
  std::sort(sorted.begin(), sorted.end(), std::greater<>());
  sorted.resize(count_, std::numeric_limits<float>::quiet_NaN());
  return sorted;
}

std::vector<float> LargestValuesOf(const cv::Mat& plane, size_t count) {
  LargestValues largest(count);
  std::mutex busy;
  const auto add = [&](const cv::Range& rows) {
    LargestValues own(count);
    for (int first = rows.start; first < std::min(rows.start + kRowStep, rows.end); ++first) {
      for (int y = first; y < rows.end; y += kRowStep) own.Add(plane.ptr<float>(y), plane.cols);
    }
    const std::lock_guard<std::mutex> lock(busy);
    largest.Add(own);
  };
  cv::parallel_for_(cv::Range(0, plane.rows), add, cv::getNumThreads());
  return largest.Sorted();
}

}  // namespace lumvik
