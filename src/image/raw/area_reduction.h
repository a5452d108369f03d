// Area averaging in tiles, with the bytes of cv::resize and cv::INTER_AREA.
#ifndef LUMVIK_IMAGE_RAW_AREA_REDUCTION_H_
#define LUMVIK_IMAGE_RAW_AREA_REDUCTION_H_

#include <opencv2/core.hpp>
#include <vector>

#include "image/raw/kernels/row_kernels.h"

namespace lumvik {

// The source pixels under each pixel of a reduced row or column, with their shares.
class AreaWeights {
 public:
  AreaWeights(int source, int reduced, double scale);

  const AreaTaps& operator[](int i) const { return taps_[static_cast<size_t>(i)]; }
  const AreaTaps* From(int i) const { return taps_.data() + i; }
  // Of the reduced pixels from `begin` on.
  cv::Range Source(int begin, int end) const;

 private:
  std::vector<float> weights_;
  std::vector<AreaTaps> taps_;
};

class AreaReduction {
 public:
  // By `factor`, below 1, on both sides, as cv::resize does it without a size of the result.
  AreaReduction(cv::Size source, double factor);

  // cv::resize rounds differently where the result is empty or a pixel covers exactly n x n source pixels:
  // for such factors this class cannot take its place.
  static bool Supports(cv::Size source, double factor);

  cv::Size Reduced() const { return reduced_; }
  cv::Rect Source(const cv::Rect& reduced) const;

  // `source`: the pixels (CV_16UC4) of Source(area). Writes `area` of the reduced image, with an opaque
  // alpha.
  void Reduce(const cv::Mat& source, const cv::Rect& area, const RowKernels& kernels, cv::Mat& image) const;

 private:
  cv::Size reduced_;
  AreaWeights columns_;
  AreaWeights rows_;
};

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_AREA_REDUCTION_H_
