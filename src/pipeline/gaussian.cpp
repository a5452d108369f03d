#include "pipeline/gaussian.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

namespace lumvik {
namespace {

// OpenCV's choices: the radius in sigmas for float images, and sigma for a radius.
constexpr double kRadiusInSigmas = 4;
constexpr double kSigmaPerRadius = 0.3;
constexpr double kSigmaOffset = 0.5;

constexpr auto kMaxRadius = static_cast<int>((Gaussian::kMaxSigma - kSigmaOffset) / kSigmaPerRadius);

}  // namespace

Gaussian Gaussian::OfSigma(double sigma) {
  CV_Assert(sigma > 0);
  const double held = std::min(sigma, kMaxSigma);
  return {(cvRound(held * kRadiusInSigmas * 2 + 1) | 1) / 2, held};
}

Gaussian Gaussian::OfSize(int size) {
  return {std::min(size / 2, kMaxRadius), 0};
}

double Gaussian::Sigma() const {
  return given_sigma_ > 0 ? given_sigma_ : kSigmaPerRadius * radius_ + kSigmaOffset;
}

SymmetricKernel Gaussian::Kernel() const {
  const cv::Mat kernel = cv::getGaussianKernel(2 * radius_ + 1, given_sigma_, CV_32F);
  return {kernel.begin<float>() + radius_, kernel.end<float>()};
}

}  // namespace lumvik
