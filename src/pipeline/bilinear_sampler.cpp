#include "pipeline/bilinear_sampler.h"

#include <algorithm>
#include <cstring>

#include "pipeline/mirrored_border.h"
#include "pipeline/packed_rows.h"
#include "pipeline/row_transform.h"

namespace lumvik {
namespace {

constexpr int kPositionBits = 5;
static_assert(1 << kPositionBits == kPositionsPerPixel);

using Pixel __attribute__((vector_size(16))) = float;

Pixel LoadPixel(const float* from) {
  Pixel pixel;
  std::memcpy(&pixel, from, sizeof(pixel));
  return pixel;
}

// The weights of the four pixels around a position.
struct CornerWeights {
  float top_left[kMaxPart];
  float top_right[kMaxPart];
  float bottom_left[kMaxPart];
  float bottom_right[kMaxPart];
};

void Weigh(const SamplePositions& positions, int count, CornerWeights& __restrict weights) {
  constexpr auto kToFraction = static_cast<float>(1.0 / kPositionsPerPixel);
  for (int i = 0; i < count; ++i) {
    const float right = static_cast<float>(positions.x[i] & (kPositionsPerPixel - 1)) * kToFraction;
    const float bottom = static_cast<float>(positions.y[i] & (kPositionsPerPixel - 1)) * kToFraction;
    weights.top_left[i] = (1.0F - bottom) * (1.0F - right);
    weights.top_right[i] = (1.0F - bottom) * right;
    weights.bottom_left[i] = bottom * (1.0F - right);
    weights.bottom_right[i] = bottom * right;
  }
}

void Mix(const float* top_left, const float* top_right, const float* bottom_left, const float* bottom_right,
         const CornerWeights& weights, int i, float* mixed) {
  const Pixel mix = LoadPixel(top_left) * weights.top_left[i] + LoadPixel(top_right) * weights.top_right[i] +
                    LoadPixel(bottom_left) * weights.bottom_left[i] +
                    LoadPixel(bottom_right) * weights.bottom_right[i];
  std::memcpy(mixed, &mix, sizeof(mix));
}

struct Source {
  const float* pixels;
  ptrdiff_t step;  // in floats
  int columns;
  int rows;

  const float* At(int x, int y) const { return pixels + y * step + static_cast<ptrdiff_t>(x) * kChannels; }

  // Including the neighbors to the right and below.
  bool HoldsInside(int x, int y) const {
    return static_cast<unsigned>(x) < static_cast<unsigned>(columns - 1) &&
           static_cast<unsigned>(y) < static_cast<unsigned>(rows - 1);
  }
};

void MixMirrored(const Source& source, int x, int y, const CornerWeights& weights, int i, float* mixed) {
  const auto column = [&](int at) { return MirroredAtEdge(at, source.columns); };
  const auto row = [&](int at) { return MirroredAtEdge(at, source.rows); };
  Mix(source.At(column(x), row(y)), source.At(column(x + 1), row(y)), source.At(column(x), row(y + 1)),
      source.At(column(x + 1), row(y + 1)), weights, i, mixed);
}

// `mixed` receives kChannels values per position.
void SampleAt(const Source& source, const SamplePositions& positions, const CornerWeights& weights, int count,
              float* mixed) {
  for (int i = 0; i < count; ++i, mixed += kChannels) {
    const int x = positions.x[i] >> kPositionBits;
    const int y = positions.y[i] >> kPositionBits;
    if (source.HoldsInside(x, y)) {
      const float* top = source.At(x, y);
      const float* bottom = top + source.step;
      Mix(top, top + kChannels, bottom, bottom + kChannels, weights, i, mixed);
      // Most positions of the next row are there, on another page, which the hardware prefetcher does not
      // reach.
      __builtin_prefetch(source.At(x, std::min(y + 2, source.rows - 1)));
    } else {
      MixMirrored(source, x, y, weights, i, mixed);
    }
  }
}

}  // namespace

RowSource Sampled(const cv::Mat& working, const LocatePart& locate) {
  const auto read = [=](const RowPart& part) {
    SamplePositions positions;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled in by locate
    locate(part, positions);
    const Source source = {working.ptr<float>(), static_cast<ptrdiff_t>(working.step1()), working.cols,
                           working.rows};
    float mixed[kMaxPart * kChannels];
    CornerWeights weights;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled in by Weigh
    Vectorized([&, columns = part.columns] { Weigh(positions, columns, weights); });
    Vectorized([&, columns = part.columns] { SampleAt(source, positions, weights, columns, mixed); });
    LoadPixels(mixed, part);
  };
  return {working.size(), read};
}

}  // namespace lumvik
