// Gaussian blur with a wide kernel, at a cost that hardly depends on its width.
#ifndef LUMVIK_PIPELINE_WIDE_GAUSSIAN_H_
#define LUMVIK_PIPELINE_WIDE_GAUSSIAN_H_

#include <opencv2/core.hpp>
#include <vector>

#include "pipeline/gaussian.h"
#include "pipeline/row_part.h"

namespace lumvik {

// A blurred image has no detail, so a coarse grid holds all of it: the plane is smoothed a little and sampled
// on the grid, blurred there, and interpolated through a second small Gaussian. The coarse kernel is the one
// with which the three together come nearest to OpenCV's kernel. The result differs from cv::GaussianBlur's,
// borders mirrored (cv::BORDER_REFLECT_101), by less than 2e-5 of the plane's range for a Gaussian of a given
// sigma, and by less than 4e-4 for one of a given size, which OpenCV cuts off at 3.3 sigmas.
class WideGaussian {
 public:
  // `plane` is CV_32FC1, `blur` is wide. Works on all threads; the bytes do not depend on their number.
  WideGaussian(const cv::Mat& plane, const Gaussian& blur);

  // The blurred values of row y from column x on. Called from several threads at once.
  void Read(int x, int y, PartColumns columns, float* blurred) const;

  // All of them (CV_32FC1).
  cv::Mat Plane() const;

 private:
  cv::Size size_;
  int step_;                              // of the grid, in pixels
  int margin_;                            // grid points left of and above that of the first pixel
  std::vector<std::vector<float>> taps_;  // of the interpolation, per pixel of a step
  cv::Mat grid_;                          // blurred
};

// `plane` (CV_32FC1) blurred, directly or on a grid. Works on all threads; the bytes do not depend on their
// number.
cv::Mat Blurred(const cv::Mat& plane, const Gaussian& blur);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_WIDE_GAUSSIAN_H_
