#include "analysis/histogram.h"

#include <mutex>
#include <opencv2/core/utility.hpp>
#include <vector>

#include "image/luminance.h"

namespace lumvik {
namespace {

constexpr int kSamples = 4;  // a pixel's: red, green, blue, alpha
constexpr float kToUnit = static_cast<float>(1.0 / 65535.0);

int LevelOf(float value) {
  return static_cast<int>(value * 255.0F + 0.5F);
}

void CountRow(const uint16_t* pixels, int columns, Histograms& counts) {
  for (int x = 0; x < columns; ++x, pixels += kSamples) {
    const float red = static_cast<float>(pixels[0]) * kToUnit;
    const float green = static_cast<float>(pixels[1]) * kToUnit;
    const float blue = static_cast<float>(pixels[2]) * kToUnit;
    ++counts.red[static_cast<size_t>(LevelOf(red))];
    ++counts.green[static_cast<size_t>(LevelOf(green))];
    ++counts.blue[static_cast<size_t>(LevelOf(blue))];
    ++counts.luminance[static_cast<size_t>(LevelOf(Luminance(red, green, blue)))];
  }
}

void Add(const Histogram& counts, Histogram& sum) {
  for (size_t i = 0; i < sum.size(); ++i) sum[i] += counts[i];
}

void Add(const Histograms& counts, Histograms& sum) {
  Add(counts.red, sum.red);
  Add(counts.green, sum.green);
  Add(counts.blue, sum.blue);
  Add(counts.luminance, sum.luminance);
}

}  // namespace

Histograms CountLevels(const ImageBuffer& image) {
  Histograms sum;
  std::mutex sum_is_busy;
  cv::parallel_for_(cv::Range(0, image.rows), [&](const cv::Range& range) {
    Histograms counts;
    for (int y = range.start; y < range.end; ++y) CountRow(image.ptr<uint16_t>(y), image.cols, counts);
    const std::lock_guard<std::mutex> lock(sum_is_busy);
    Add(counts, sum);
  });
  return sum;
}

}  // namespace lumvik
