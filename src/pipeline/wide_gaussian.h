// Gaussian blur with a wide window, at a cost that does not grow with it.
#ifndef LUMVIK_PIPELINE_WIDE_GAUSSIAN_H_
#define LUMVIK_PIPELINE_WIDE_GAUSSIAN_H_

#include <opencv2/core.hpp>
#include <vector>

namespace lumvik {

// A blurred picture has no detail, so a coarse grid holds all of it: the plane is smoothed a little and
// sampled on the grid, blurred there, and read in between through a second small Gaussian. The coarse window
// is the one with which the three together come nearest to OpenCV's window. The result differs from
// cv::GaussianBlur's, borders mirrored (cv::BORDER_REFLECT_101), by less than 2e-5 of the plane's range.
class WideGaussian {
 public:
  static constexpr double kMinSigma = 16.0;
  static constexpr double kMaxSigma = 4096.0;

  // `plane` is CV_32FC1, `sigma` in pixels, kMinSigma..kMaxSigma. Works on all threads; the bytes do not
  // depend on their number.
  WideGaussian(const cv::Mat& plane, double sigma);

  // The blurred values of row y from column x on, at most 1024. Called from several threads at once.
  void Read(int x, int y, int columns, float* blurred) const;

  // All of them.
  cv::Mat Plane() const;

 private:
  cv::Size size_;
  int step_;                              // of the grid, in pixels
  int margin_;                            // so many grid points lie left of and above the first pixel's
  std::vector<std::vector<float>> taps_;  // of the interpolation, for each pixel of a step
  cv::Mat grid_;                          // blurred
};

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_WIDE_GAUSSIAN_H_
