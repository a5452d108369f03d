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

cv::Mat SpreadOverUnit(const cv::Mat& plane) {
  cv::Mat spread;
  cv::normalize(plane, spread, 0, 1, cv::NORM_MINMAX);
  return spread;
}

cv::Mat Derivative(const cv::Mat& plane, int along_x, int along_y) {
  cv::Mat derivative;
  cv::Sobel(plane, derivative, CV_32F, along_x, along_y, 3, 1, 0, cv::BORDER_REFLECT_101);
  return derivative;
}

// What is left of the amplitudes when their neighborhood's usual course is taken away.
cv::Mat ResidualAmplitude(const cv::Mat& amplitude) {
  constexpr float kAboveZero = 1e-8F;
  cv::Mat residual;
  cv::log(amplitude + cv::Scalar(kAboveZero), residual);
  cv::Mat course;
  cv::blur(residual, course, cv::Size(3, 3), cv::Point(-1, -1), cv::BORDER_REFLECT_101);
  cv::exp(residual - course, residual);
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
  // The image whose spectrum has these phases and what is left of the amplitudes.
  std::transform(
      phase.begin<float>(), phase.end<float>(), residual.begin<float>(), spectrum.begin<cv::Vec2f>(),
      [](float angle, float length) { return cv::Vec2f(std::cos(angle), std::sin(angle)) * length; });
  cv::idft(spectrum, spectrum, cv::DFT_SCALE);
  cv::Mat saliency;
  cv::extractChannel(spectrum, saliency, 0);
  cv::pow(saliency, 2, saliency);
  return SpreadOverUnit(Smoothed(saliency, kSigma));
}

cv::Mat edge_strength(const cv::Mat& luminance) {
  cv::Mat strength;
  cv::magnitude(Derivative(luminance, 1, 0), Derivative(luminance, 0, 1), strength);
  return SpreadOverUnit(strength);
}

cv::Mat InterestMap(const cv::Mat& image) {
  constexpr double kEdgeWeight = 0.4F;
  constexpr double kSaliencyWeight = 0.6F;
  constexpr float kSigmaOfWidth = 0.02F;
  const cv::Mat luminance = WeightedLuminance(image);
  cv::Mat saliency;
  cv::resize(spectral_saliency(luminance), saliency, image.size(), 0, 0, cv::INTER_LINEAR);
  const cv::Mat interest = kEdgeWeight * edge_strength(luminance) + kSaliencyWeight * saliency;
  return SpreadOverUnit(Smoothed(interest, static_cast<float>(image.cols) * kSigmaOfWidth));
}

}  // namespace lumvik
