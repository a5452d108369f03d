#include "pipeline/bilinear_sampler.h"

#include <algorithm>
#include <cstring>

namespace lumvik {
namespace {

constexpr int kPlaceBits = 5;
static_assert(1 << kPlaceBits == kPlacesPerPixel);

using Pixel __attribute__((vector_size(16))) = float;

Pixel LoadPixel(const float* from) {
  Pixel pixel;
  std::memcpy(&pixel, from, sizeof(pixel));
  return pixel;
}

// How much the four pixels around a place take part in it.
struct CornerWeights {
  float top_left[kMaxPart];
  float top_right[kMaxPart];
  float bottom_left[kMaxPart];
  float bottom_right[kMaxPart];
};

void Weigh(const Places& places, int count, CornerWeights& __restrict weights) {
  constexpr auto kToFraction = static_cast<float>(1.0 / kPlacesPerPixel);
  for (int i = 0; i < count; ++i) {
    const float right = static_cast<float>(places.x[i] & (kPlacesPerPixel - 1)) * kToFraction;
    const float bottom = static_cast<float>(places.y[i] & (kPlacesPerPixel - 1)) * kToFraction;
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
  ptrdiff_t step;  // floats a row
  int columns;
  int rows;

  const float* At(int x, int y) const { return pixels + y * step + static_cast<ptrdiff_t>(x) * kChannels; }

  // With a neighbor to the right and one below.
  bool HoldsInside(int x, int y) const {
    return static_cast<unsigned>(x) < static_cast<unsigned>(columns - 1) &&
           static_cast<unsigned>(y) < static_cast<unsigned>(rows - 1);
  }
};

void MixMirrored(const Source& source, int x, int y, const CornerWeights& weights, int i, float* mixed) {
  const auto column = [&](int at) { return cv::borderInterpolate(at, source.columns, cv::BORDER_REFLECT); };
  const auto row = [&](int at) { return cv::borderInterpolate(at, source.rows, cv::BORDER_REFLECT); };
  Mix(source.At(column(x), row(y)), source.At(column(x + 1), row(y)), source.At(column(x), row(y + 1)),
      source.At(column(x + 1), row(y + 1)), weights, i, mixed);
}

// `mixed`: kChannels values for each place.
void SamplePlaces(const Source& source, const Places& places, const CornerWeights& weights, int count,
                  float* mixed) {
  for (int i = 0; i < count; ++i, mixed += kChannels) {
    const int x = places.x[i] >> kPlaceBits;
    const int y = places.y[i] >> kPlaceBits;
    if (source.HoldsInside(x, y)) {
      const float* top = source.At(x, y);
      const float* bottom = top + source.step;
      Mix(top, top + kChannels, bottom, bottom + kChannels, weights, i, mixed);
      // Of the next row's places most lie there, in another page, where the processor does not look by
      // itself.
      __builtin_prefetch(source.At(x, std::min(y + 2, source.rows - 1)));
    } else {
      MixMirrored(source, x, y, weights, i, mixed);
    }
  }
}

}  // namespace

RowImage Sampled(const cv::Mat& working, const PlaceRow& place_row) {
  const auto read = [=](const PixelRow& part) {
    Places places;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled in by place_row
    place_row(part, places);
    const Source source = {working.ptr<float>(), static_cast<ptrdiff_t>(working.step1()), working.cols,
                           working.rows};
    float mixed[kMaxPart * kChannels];
    CornerWeights weights;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled in by Weigh
    Vectorized([&, columns = part.columns] { Weigh(places, columns, weights); });
    Vectorized([&, columns = part.columns] { SamplePlaces(source, places, weights, columns, mixed); });
    LoadPixels(mixed, part);
  };
  return {working.size(), read};
}

}  // namespace lumvik
