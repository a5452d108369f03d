// Selecting the largest values of many.
#ifndef LUMVIK_PIPELINE_LARGEST_VALUES_H_
#define LUMVIK_PIPELINE_LARGEST_VALUES_H_

#include <cstddef>
#include <limits>
#include <opencv2/core.hpp>
#include <vector>

namespace lumvik {

// The `count` largest of the values added so far. Once it holds that many, nearly all further values fail one
// comparison.
class LargestValues {
 public:
  explicit LargestValues(size_t count) : count_(count) {}

  void Add(const float* values, int count);
  void Add(const LargestValues& other);

  // In descending order. NaN fills the places of missing values.
  std::vector<float> Sorted() const;

 private:
  void Add(float value);
  void DropSmallest();

  size_t count_;
  float smallest_wanted_ = -std::numeric_limits<float>::infinity();
  std::vector<float> values_;  // at most twice as many, in no order
};

// Those of a plane (CV_32FC1), in descending order. Works on all threads.
std::vector<float> LargestValuesOf(const cv::Mat& plane, size_t count);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_LARGEST_VALUES_H_
