#include "pipeline/stages/dehaze.h"

#include <algorithm>
#include <opencv2/core.hpp>
#include <vector>

#include "pipeline/largest_values.h"
#include "pipeline/pixel_math.h"
#include "pipeline/scaled_blur.h"
#include "pipeline/square_minimum.h"

namespace lumvik {
namespace {

constexpr double kPatchShare = 0.02;  // of the image's width
constexpr int kMinPatch = 3;
constexpr double kBrightestShare = 0.001;  // of the pixels
constexpr float kMinAirlight = 0.01F;
constexpr float kDehazeStrength = 0.95F;
constexpr double kTransmissionSigma = 5.0;
constexpr float kMinTransmission = 0.1F;

cv::Mat DarkChannel(const cv::Mat& minimum) {
  return SquareMinimum(minimum, std::max(static_cast<int>(minimum.cols * kPatchShare) | 1, kMinPatch));
}

// The order of the sum decides the last bits of the mean.
float Airlight(const cv::Mat& dark) {
  const auto count =
      std::max(static_cast<size_t>(static_cast<double>(dark.total()) * kBrightestShare), size_t{1});
  const std::vector<float> brightest = LargestValuesOf(dark, count);
  return std::max(static_cast<float>(cv::mean(cv::Mat(brightest, false).reshape(1, 1))[0]), kMinAirlight);
}

void Clear(const RowPart& row, const float* transmission, float airlight) {
  for (int i = 0; i < row.columns; ++i) {
    const float t = transmission[i] > kMinTransmission ? transmission[i] : 0.0F;
    const auto cleared = [=](float value) { return SaturateUnit((value - airlight) / t + airlight); };
    row.red[i] = cleared(row.red[i]);
    row.green[i] = cleared(row.green[i]);
    row.blue[i] = cleared(row.blue[i]);
  }
}

RowSink StoreMinimum(const cv::Mat& plane) {
  return {[plane](const RowPart& part) {
    const auto store = [](const RowPart& own, float* __restrict minimum) {
      for (int i = 0; i < own.columns; ++i) {
        minimum[i] = std::min(std::min(own.red[i], own.green[i]), own.blue[i]);
      }
    };
    ChangePart(store, part, PixelsOf<float>(plane, part));
  }};
}

}  // namespace

RowTransform Dehaze(float amount, const StoreRows& store) {
  cv::Mat minimum = store(CV_32F, StoreMinimum);
  cv::Mat dark = DarkChannel(minimum);
  const float airlight = Airlight(dark);
  // In OpenCV's bytes, since the threshold and the division that follow make a difference in the last bit
  // visible.
  cv::Mat& transmission = minimum;
  const double strength = amount / 100.0F * kDehazeStrength;
  ScaleAndBlur(dark, {-(strength * (1 / static_cast<double>(airlight))), 1}, kTransmissionSigma,
               transmission);
  return MakeRowTransform(
      [airlight](const RowPart& part, const float* values) { Clear(part, values, airlight); }, transmission);
}

}  // namespace lumvik
