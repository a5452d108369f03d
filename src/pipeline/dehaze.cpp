#include "pipeline/dehaze.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <mutex>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "image/large_image.h"
#include "pipeline/gaussian_blur.h"
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
constexpr float kMinTransmission = 0.1F;

// The smallest colour of each pixel's neighbourhood.
cv::Mat DarkChannel(const ColorPlanes& image) {
  cv::Mat smallest = LargeImage(image.Size(), CV_32F);
  ForEachRow(smallest.rows, [&](int y) {
    const auto* red = image.red.ptr<float>(y);
    const auto* green = image.green.ptr<float>(y);
    const auto* blue = image.blue.ptr<float>(y);
    auto* out = smallest.ptr<float>(y);
    Vectorized([=, columns = smallest.cols] {
      for (int x = 0; x < columns; ++x) out[x] = std::min(std::min(red[x], green[x]), blue[x]);
    });
  });
  const int patch = std::max(static_cast<int>(smallest.cols * kPatchShare) | 1, kMinPatch);
  const cv::Mat square = cv::Mat::ones(patch, patch, CV_8U);
  cv::Mat dark = LargeImage(smallest.size(), CV_32F);
  cv::parallel_for_(
      cv::Range(0, dark.rows),
      [&](const cv::Range& rows) {
        cv::Mat stripe = dark.rowRange(rows);
        cv::erode(smallest.rowRange(rows), stripe, square);
      },
      cv::getNumThreads());
  return dark;
}

// The upper half of a value's bits, which has the values' order. What is not above 0, or no number, comes
// first.
constexpr size_t kClasses = 1 << 16;
size_t ClassOf(float value) {
  uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  return value > 0 ? bits >> 16 : 0;
}

// Calls `work(values, count)` for every row, each thread on rows of its own with a copy of `part` to work on,
// and then `add(part)`, one at a time.
template <typename Part, typename Work, typename Add>
void Gather(const cv::Mat& plane, const Part& part, const Work& work, const Add& add) {
  std::mutex busy;
  const auto gather = [&](const cv::Range& rows) {
    Part own = part;
    for (int y = rows.start; y < rows.end; ++y) work(plane.ptr<float>(y), plane.cols, own);
    const std::lock_guard<std::mutex> lock(busy);
    add(own);
  };
  cv::parallel_for_(cv::Range(0, plane.rows), gather, cv::getNumThreads());
}

// The lowest class such that at least `count` values lie in it or above.
size_t LowestClass(const cv::Mat& plane, size_t count) {
  using Counts = std::vector<uint32_t>;
  Counts in_class(kClasses);
  Gather(
      plane, Counts(kClasses),
      [](const float* values, int columns, Counts& counts) {
        for (int x = 0; x < columns; ++x) ++counts[ClassOf(values[x])];
      },
      [&](const Counts& counts) {
        std::transform(counts.begin(), counts.end(), in_class.begin(), in_class.begin(), std::plus<>());
      });
  size_t lowest = kClasses;
  for (size_t found = 0; found < count;) found += in_class[--lowest];
  return lowest;
}

// The `count` brightest values, brightest first. They are picked by class before they are sorted: sorting or
// even partitioning the whole plane would cost more than the rest of the stage.
std::vector<float> Brightest(const cv::Mat& plane, size_t count) {
  using Values = std::vector<float>;
  const size_t lowest = LowestClass(plane, count);
  Values brightest;
  Gather(
      plane, Values(),
      [lowest](const float* values, int columns, Values& found) {
        for (int x = 0; x < columns; ++x) {
          if (ClassOf(values[x]) >= lowest) found.push_back(values[x]);
        }
      },
      [&](const Values& found) { brightest.insert(brightest.end(), found.begin(), found.end()); });
  std::sort(brightest.begin(), brightest.end(), std::greater<>());
  brightest.resize(count);
  return brightest;
}

// The mean of the brightest values; the order of the addition decides the last bits.
float Airlight(const cv::Mat& dark) {
  const auto count =
      std::max(static_cast<size_t>(static_cast<double>(dark.total()) * kBrightestShare), size_t{1});
  std::vector<float> values = Brightest(dark, count);
  return std::max(static_cast<float>(cv::mean(cv::Mat(values, false).reshape(1, 1))[0]), kMinAirlight);
}

cv::Mat Transmission(cv::Mat dark, float strength, float airlight) {
  cv::parallel_for_(cv::Range(0, dark.rows), [&](const cv::Range& rows) {
    cv::Mat stripe = dark.rowRange(rows);
    stripe = 1.0 - stripe * static_cast<double>(strength) / static_cast<double>(airlight);
  });
  return GaussianBlurred(dark, kTransmissionSigma);
}

void Clear(const PixelRow& row, const float* transmission, float airlight) {
  for (int i = 0; i < row.columns; ++i) {
    const float t = transmission[i] > kMinTransmission ? transmission[i] : 0.0F;
    const auto cleared = [=](float value) { return SaturateUnit((value - airlight) / t + airlight); };
    row.red[i] = cleared(row.red[i]);
    row.green[i] = cleared(row.green[i]);
    row.blue[i] = cleared(row.blue[i]);
  }
}

}  // namespace

RowKernel Dehaze(const ColorPlanes& image, float amount) {
  const cv::Mat dark = DarkChannel(image);
  const float airlight = Airlight(dark);
  return MakeRowKernel(
      [airlight](const PixelRow& row, const float* transmission) { Clear(row, transmission, airlight); },
      Transmission(dark, amount / 100.0F * kStrength, airlight));
}

}  // namespace lumvik
