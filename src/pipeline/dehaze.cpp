#include "pipeline/dehaze.h"

#include <algorithm>
#include <functional>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "pipeline/pixel_math.h"
#include "pipeline/working_image.h"

namespace lumvik {
namespace {

constexpr double kPatchShare = 0.02;  // of the image's width
constexpr int kMinPatch = 3;
constexpr double kBrightestShare = 0.001;  // of the pixels
constexpr float kMinAirlight = 0.01F;
constexpr float kStrength = 0.95F;
constexpr double kTransmissionSigma = 5.0;
constexpr double kMinTransmission = 0.1;

// The smallest colour of each pixel's neighbourhood.
cv::Mat DarkChannel(const cv::Mat& working) {
  cv::Mat dark(working.size(), CV_32F);
  ForEachRow(working.rows, [&](int y) {
    const auto* pixels = working.ptr<cv::Vec4f>(y);
    auto* smallest = dark.ptr<float>(y);
    for (int x = 0; x < working.cols; ++x) {
      smallest[x] = std::min(std::min(pixels[x][0], pixels[x][1]), pixels[x][2]);
    }
  });
  const int patch = std::max(static_cast<int>(working.cols * kPatchShare) | 1, kMinPatch);
  cv::erode(dark, dark, cv::Mat::ones(patch, patch, CV_8U));
  return dark;
}

// The mean of the brightest values. Only these are sorted: the order of the addition decides the last bits.
float Airlight(const cv::Mat& dark) {
  std::vector<float> values(dark.begin<float>(), dark.end<float>());
  const auto count = std::max(
      static_cast<std::ptrdiff_t>(static_cast<double>(values.size()) * kBrightestShare), std::ptrdiff_t{1});
  const auto brightest_end = values.begin() + count;
  std::nth_element(values.begin(), brightest_end - 1, values.end(), std::greater<>());
  values.erase(brightest_end, values.end());
  std::sort(values.begin(), values.end(), std::greater<>());
  return std::max(static_cast<float>(cv::mean(cv::Mat(values, false).reshape(1, 1))[0]), kMinAirlight);
}

cv::Mat Transmission(const cv::Mat& dark, float strength, float airlight) {
  cv::Mat transmission = 1.0 - dark * static_cast<double>(strength) / static_cast<double>(airlight);
  cv::GaussianBlur(transmission, transmission, cv::Size(), kTransmissionSigma);
  cv::threshold(transmission, transmission, kMinTransmission, kMinTransmission, cv::THRESH_TOZERO);
  return transmission;
}

}  // namespace

void Dehaze(cv::Mat& working, float amount) {
  if (amount <= 0.0F) return;
  const cv::Mat dark = DarkChannel(working);
  const float airlight = Airlight(dark);
  const cv::Mat transmission = Transmission(dark, amount / 100.0F * kStrength, airlight);
  ForEachRow(working.rows, [&](int y) {
    auto* pixels = working.ptr<float>(y);
    const auto* t = transmission.ptr<float>(y);
    for (int x = 0; x < working.cols; ++x) {
      for (int c = 0; c < kColors; ++c) {
        float& value = pixels[x * kChannels + c];
        value = SaturateUnit((value - airlight) / t[x] + airlight);
      }
    }
  });
}

}  // namespace lumvik
