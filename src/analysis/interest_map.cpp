#include "analysis/interest_map.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "analysis/reduced_copy.h"

namespace lumvik {
namespace {

cv::Mat Smoothed(const cv::Mat& plane, double sigma) {
  cv::Mat blurred;
  cv::GaussianBlur(plane, blurred, cv::Size(), sigma, 0, cv::BORDER_REFLECT_101);
  return blurred;
}

cv::Mat NormalizedToUnit(const cv::Mat& plane) {
  cv::Mat normalized;
  cv::normalize(plane, normalized, 0, 1, cv::NORM_MINMAX);
  return normalized;
}

cv::Mat Derivative(const cv::Mat& plane, int along_x, int along_y) {
  cv::Mat derivative;
  cv::Sobel(plane, derivative, CV_32F, along_x, along_y, 3, 1, 0, cv::BORDER_REFLECT_101);
  return derivative;
}

// The amplitudes over their local geometric mean: subtracted as logarithms.
cv::Mat ResidualAmplitude(const cv::Mat& amplitude) {
  constexpr float kEpsilon = 1e-8F;
  cv::Mat residual;
  cv::log(amplitude + cv::Scalar(kEpsilon), residual);
  cv::Mat mean;
  cv::blur(residual, mean, cv::Size(3, 3), cv::Point(-1, -1), cv::BORDER_REFLECT_101);
  cv::exp(residual - mean, residual);
  return residual;
}

}  // namespace

cv::Mat spectral_saliency(const cv::Mat& luminance) {
  constexpr int kSide = 64;
  constexpr double kSigma = 8;
  std::array<cv::Mat, 2> parts = {cv::Mat(), cv::Mat::zeros(kSide, kSide, CV_32F)};
  cv::resize(luminance, parts[0], cv::Size(kSide, kSide), 0, 0, cv::INTER_LINEAR);
  cv::Mat spectrum;
  cv::merge(parts.data(), parts.size(), spectrum);
  cv::dft(spectrum, spectrum);
  cv::split(spectrum, parts.data());
  cv::Mat amplitude;
  cv::magnitude(parts[0], parts[1], amplitude);
  const cv::Mat residual = ResidualAmplitude(amplitude);
  cv::Mat phase;
  cv::phase(parts[0], parts[1], phase);
  // Back to an image, with the phases as they were and the residual amplitudes.
  std::transform(
      phase.begin<float>(), phase.end<float>(), residual.begin<float>(), spectrum.begin<cv::Vec2f>(),
      [](float angle, float length) { return cv::Vec2f(std::cos(angle), std::sin(angle)) * length; });
  cv::idft(spectrum, spectrum, cv::DFT_SCALE);
  cv::Mat saliency;
  cv::extractChannel(spectrum, saliency, 0);
  cv::pow(saliency, 2, saliency);
  return NormalizedToUnit(Smoothed(saliency, kSigma));
}

cv::Mat edge_strength(const cv::Mat& luminance) {
  cv::Mat strength;
  cv::magnitude(Derivative(luminance, 1, 0), Derivative(luminance, 0, 1), strength);
  return NormalizedToUnit(strength);
}

cv::Mat InterestMap(const cv::Mat& image) {
  constexpr double kEdgeWeight = 0.4F;
  constexpr double kSaliencyWeight = 0.6F;
  constexpr float kSigmaOfWidth = 0.02F;
  const cv::Mat luminance = WeightedLuminance(image);
  cv::Mat saliency;
  cv::resize(spectral_saliency(luminance), saliency, image.size(), 0, 0, cv::INTER_LINEAR);
  const cv::Mat interest = kEdgeWeight * edge_strength(luminance) + kSaliencyWeight * saliency;
  return NormalizedToUnit(Smoothed(interest, static_cast<float>(image.cols) * kSigmaOfWidth));
}

}  // namespace lumvik
