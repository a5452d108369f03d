#include "pipeline/stages/dehaze.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "base/large_image.h"
#include "pipeline/largest_values.h"
#include "pipeline/pixel_math.h"
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

// Calls `work(rows)` for each of `stripes` ranges of rows, on all threads.
template <typename Work>
void ForStripes(int rows, int stripes, const Work& work) {
  cv::parallel_for_(cv::Range(0, rows), work, stripes);
}

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

// Overwrites `dark`. Blurred by OpenCV itself, since the threshold and the division that follow make a
// difference in the last bit visible. Its blur runs on one thread, but given a range of rows it reads the
// rows around them.
cv::Mat Transmission(cv::Mat& dark, float strength, float airlight) {
  ForStripes(dark.rows, cv::getNumThreads(), [&](const cv::Range& rows) {
    cv::Mat stripe = dark.rowRange(rows);
    stripe = 1.0 - stripe * static_cast<double>(strength) / static_cast<double>(airlight);
  });
  cv::Mat transmission = LargeImage(dark.size(), CV_32F);
  // The last bits of a single column depend on the number of rows; those of wider planes do not.
  const int stripes = dark.cols == 1 ? 1 : cv::getNumThreads();
  ForStripes(dark.rows, stripes, [&](const cv::Range& rows) {
    cv::Mat stripe = transmission.rowRange(rows);
    cv::GaussianBlur(dark.rowRange(rows), stripe, cv::Size(), kTransmissionSigma);
  });
  return transmission;
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
  cv::Mat dark = DarkChannel(store(CV_32F, StoreMinimum));
  const float airlight = Airlight(dark);
  return MakeRowTransform(
      [airlight](const RowPart& part, const float* transmission) { Clear(part, transmission, airlight); },
      Transmission(dark, amount / 100.0F * kDehazeStrength, airlight));
}

}  // namespace lumvik
