#include "analysis/histogram.h"

#include <algorithm>
#include <mutex>
#include <opencv2/core/utility.hpp>
#include <vector>

#include "base/code_scale.h"
#include "base/luminance.h"
#include "base/vectorized.h"
#include "image/image_buffer.h"

namespace lumvik {
namespace {

constexpr int kSamples = 4;  // per pixel: red, green, blue, alpha

constexpr int kBlock = 512;  // pixels; they and their levels stay in L1

float UnitOf(uint16_t code) {
  return static_cast<float>(code) * kUnitPerCode;
}

// code * 255 / 65535 rounded to nearest, which is (code + 128) / 257, without a division.
uint32_t LevelOfCode(uint32_t code) {
  const uint32_t shifted = code + 128;
  return (shifted - (shifted >> 8)) >> 8;
}

uint32_t LevelOfUnit(float value) {
  // NOLINTNEXTLINE(bugprone-incorrect-roundings): levels are defined by adding a half and truncating
  return static_cast<uint32_t>(static_cast<int>(value * 255.0F + 0.5F));
}

// Packs the four levels of each pixel into a word, red in the low byte, luminance in the high byte.
void LevelsOf(const uint16_t* pixels, int count, uint32_t* levels) {
  for (int x = 0; x < count; ++x) {
    const uint16_t red = pixels[kSamples * x];
    const uint16_t green = pixels[kSamples * x + 1];
    const uint16_t blue = pixels[kSamples * x + 2];
    const float luminance = Luminance(UnitOf(red), UnitOf(green), UnitOf(blue));
    levels[x] =
        LevelOfCode(red) | LevelOfCode(green) << 8 | LevelOfCode(blue) << 16 | LevelOfUnit(luminance) << 24;
  }
}

// Joint histograms of red with green and of blue with luminance, 256 KiB each. The increments dominate the
// cost, and this way a pixel takes two instead of four.
class PairCounts {
 public:
  void Count(const uint32_t* levels, int count) {
    uint32_t* const red_green = red_green_.data();
    uint32_t* const blue_luminance = blue_luminance_.data();
    for (int x = 0; x < count; ++x) {
      ++red_green[levels[x] & 0xFFFF];
      ++blue_luminance[levels[x] >> 16];
    }
  }

  void AddTo(Histograms& sum) const {
    for (size_t high = 0; high < kHistogramBins; ++high) {
      for (size_t low = 0; low < kHistogramBins; ++low) {
        const size_t pair = high * kHistogramBins + low;
        sum.red[low] += red_green_[pair];
        sum.green[high] += red_green_[pair];
        sum.blue[low] += blue_luminance_[pair];
        sum.luminance[high] += blue_luminance_[pair];
      }
    }
  }

 private:
  static constexpr size_t kPairs = static_cast<size_t>(kHistogramBins) * kHistogramBins;
  std::vector<uint32_t> red_green_ = std::vector<uint32_t>(kPairs);
  std::vector<uint32_t> blue_luminance_ = std::vector<uint32_t>(kPairs);
};

void CountRow(const uint16_t* pixels, int columns, PairCounts& counts) {
  uint32_t levels[kBlock];
  for (int x = 0; x < columns; x += kBlock) {
    const int count = std::min(kBlock, columns - x);
    const uint16_t* block = pixels + static_cast<ptrdiff_t>(kSamples) * x;
    Vectorized([=, &levels] { LevelsOf(block, count, levels); });
    counts.Count(levels, count);
  }
}

}  // namespace

Histograms CountLevels(const ImageBuffer& image) {
  Histograms sum;
  std::mutex sum_mutex;
  const auto count_rows = [&](const cv::Range& rows) {
    PairCounts counts;
    for (int y = rows.start; y < rows.end; ++y) CountRow(image.ptr<uint16_t>(y), image.cols, counts);
    const std::lock_guard<std::mutex> lock(sum_mutex);
    counts.AddTo(sum);
  };
  // One stripe per thread, since each stripe clears and adds up its own tables.
  cv::parallel_for_(cv::Range(0, image.rows), count_rows, cv::getNumThreads());
  return sum;
}

}  // namespace lumvik
