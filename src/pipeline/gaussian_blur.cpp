#include "pipeline/gaussian_blur.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>

#include "image/large_image.h"
#include "pipeline/sliding_gaussian.h"

namespace lumvik {
namespace {

constexpr double kLargestSigma = 1e6;

// OpenCV's float filters use one thread; called for some rows, they look at the rows around by themselves.
cv::Mat FilteredInStripes(const cv::Mat& plane, cv::Size kernel, double sigma) {
  cv::Mat blurred = LargeImage(plane.size(), plane.type());
  // The last bits of a single column depend on its number of rows, those of wider planes do not.
  const int stripes = plane.cols == 1 ? 1 : cv::getNumThreads();
  cv::parallel_for_(
      cv::Range(0, plane.rows),
      [&](const cv::Range& rows) {
        cv::Mat stripe = blurred.rowRange(rows);
        cv::GaussianBlur(plane.rowRange(rows), stripe, kernel, sigma);
      },
      stripes);
  return blurred;
}

}  // namespace

cv::Mat GaussianBlurred(const cv::Mat& plane, double sigma) {
  // What is no sensible sigma is for OpenCV to refuse.
  const bool wide = sigma >= kSlidingSigma && sigma <= kLargestSigma;
  return wide ? SlidingGaussian(plane, sigma) : FilteredInStripes(plane, cv::Size(), sigma);
}

cv::Mat GaussianBlurred(const cv::Mat& plane, cv::Size kernel) {
  return FilteredInStripes(plane, kernel, 0);
}

}  // namespace lumvik
