#include "commands/histogram_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace lumvik {
namespace {

constexpr int kColumnsPerBin = 3;
constexpr int kWidth = kColumnsPerBin * LUMVIK_HOST_HISTOGRAM_BINS;
constexpr int kHeight = kWidth / 2;
constexpr int kChannels = 3;
constexpr uint8_t kBackground = 26;
constexpr uint8_t kArea = 200;
constexpr uint8_t kLine = 245;
constexpr int kLineWidth = 2;

using Histogram = std::uint32_t[LUMVIK_HOST_HISTOGRAM_BINS];

// The filled height of each column, in pixels from the bottom.
using Heights = std::array<int, kWidth>;

uint32_t HighestInside(const Histogram& counts) {
  return *std::max_element(std::begin(counts) + 1, std::end(counts) - 1);
}

uint32_t Scale(const api::Histogram& counts) {
  return std::max({HighestInside(counts.red), HighestInside(counts.green), HighestInside(counts.blue),
                   HighestInside(counts.luminance), 1U});
}

Heights HeightsOf(const Histogram& counts, uint32_t scale) {
  Heights heights{};
  for (std::size_t x = 0; x < heights.size(); ++x) {
    const uint32_t count = counts[x / kColumnsPerBin];
    const double share = static_cast<double>(count) / scale;
    heights[x] = static_cast<int>(std::lround(std::min(share, 1.0) * (kHeight - 1)));
  }
  return heights;
}

uint8_t& Sample(api::Image& image, std::size_t x, int height, int channel) {
  const auto row = static_cast<std::size_t>(kHeight - 1 - height);
  return image.data[(row * kWidth + x) * kChannels + static_cast<std::size_t>(channel)];
}

void Fill(api::Image& image, const Heights& heights, int channel) {
  for (std::size_t x = 0; x < heights.size(); ++x) {
    for (int height = 0; height < heights[x]; ++height) Sample(image, x, height, channel) = kArea;
  }
}

// Connects each column's height to that of the previous one.
void Draw(api::Image& image, const Heights& heights) {
  for (std::size_t x = 0; x < heights.size(); ++x) {
    const int before = heights[x == 0 ? 0 : x - 1];
    const auto [low, high] = std::minmax(before, heights[x]);
    for (int height = std::max(low - kLineWidth + 1, 0); height <= high; ++height) {
      for (int channel = 0; channel < kChannels; ++channel) Sample(image, x, height, channel) = kLine;
    }
  }
}

}  // namespace

api::Image HistogramImage(const api::Histogram& counts) {
  api::Image image{kWidth, kHeight, kChannels, {}};
  image.data.assign(static_cast<std::size_t>(kWidth) * kHeight * kChannels, kBackground);
  const uint32_t scale = Scale(counts);
  Fill(image, HeightsOf(counts.red, scale), 0);
  Fill(image, HeightsOf(counts.green, scale), 1);
  Fill(image, HeightsOf(counts.blue, scale), 2);
  Draw(image, HeightsOf(counts.luminance, scale));
  return image;
}

}  // namespace lumvik
