#include "reference/noise_reduction.h"

#include <opencv2/imgproc.hpp>
#include <vector>

#include "reference/luminance.h"

namespace lumvik::reference {
namespace {

constexpr float kLuminanceStrength = 0.6F;
constexpr float kMinDivisor = 1e-6F;

int LuminanceKernelSize(float nr_luminance) {
  return 3 - 2 * static_cast<int>(nr_luminance / -100.0F * 5.0F);
}

int ColorKernelSize(float nr_color) {
  return 3 - 2 * static_cast<int>(nr_color / -100.0F * 4.0F);
}

void SmoothLuminance(std::vector<cv::Mat>& planes, float nr_luminance) {
  const cv::Mat luminance = LuminancePlane(planes);
  const int side = LuminanceKernelSize(nr_luminance);
  cv::Mat smooth;
  cv::GaussianBlur(luminance, smooth, cv::Size(side, side), 0, 0, cv::BORDER_REFLECT_101);
  const double w = nr_luminance / 100.0F * kLuminanceStrength;
  for (size_t c = 0; c < 3; ++c) {
    const cv::Mat ratio = smooth / (luminance + cv::Scalar(kMinDivisor));
    planes[c] = planes[c] * (1.0 - w) + planes[c].mul(ratio) * w;
  }
}

void BlurColors(std::vector<cv::Mat>& planes, float nr_color) {
  const int side = ColorKernelSize(nr_color);
  for (size_t c = 0; c < 3; ++c) {
    cv::GaussianBlur(planes[c], planes[c], cv::Size(side, side), 0, 0, cv::BORDER_REFLECT_101);
  }
}

}  // namespace

void NoiseReduction(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.nr_luminance == 0 && adjustments.nr_color == 0) return;
  std::vector<cv::Mat> planes;
  cv::split(working, planes);
  if (adjustments.nr_luminance > 0) SmoothLuminance(planes, adjustments.nr_luminance);
  if (adjustments.nr_color > 0) BlurColors(planes, adjustments.nr_color);
  cv::merge(planes, working);
}

}  // namespace lumvik::reference
