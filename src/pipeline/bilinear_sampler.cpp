#include "pipeline/bilinear_sampler.h"

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

// The four pixels around a place, mixed by how near it lies to each.
void Mix(const float* top_left, const float* top_right, const float* bottom_left, const float* bottom_right,
         int place_x, int place_y, float* mixed) {
  constexpr auto kToFraction = static_cast<float>(1.0 / kPlacesPerPixel);
  const float right = static_cast<float>(place_x & (kPlacesPerPixel - 1)) * kToFraction;
  const float bottom = static_cast<float>(place_y & (kPlacesPerPixel - 1)) * kToFraction;
  const float left = 1.0F - right;
  const float top = 1.0F - bottom;
  const Pixel mix = LoadPixel(top_left) * (top * left) + LoadPixel(top_right) * (top * right) +
                    LoadPixel(bottom_left) * (bottom * left) + LoadPixel(bottom_right) * (bottom * right);
  std::memcpy(mixed, &mix, sizeof(mix));
}

struct Source {
  const float* pixels;
  ptrdiff_t step;  // floats a row
  int columns;
  int rows;

  const float* At(int x, int y) const { return pixels + y * step + static_cast<ptrdiff_t>(x) * kChannels; }

  // With a neighbour to the right and one below.
  bool HoldsInside(int x, int y) const {
    return static_cast<unsigned>(x) < static_cast<unsigned>(columns - 1) &&
           static_cast<unsigned>(y) < static_cast<unsigned>(rows - 1);
  }
};

void MixMirrored(const Source& source, int place_x, int place_y, float* mixed) {
  const auto column = [&](int x) { return cv::borderInterpolate(x, source.columns, cv::BORDER_REFLECT); };
  const auto row = [&](int y) { return cv::borderInterpolate(y, source.rows, cv::BORDER_REFLECT); };
  const int x = place_x >> kPlaceBits;
  const int y = place_y >> kPlaceBits;
  Mix(source.At(column(x), row(y)), source.At(column(x + 1), row(y)), source.At(column(x), row(y + 1)),
      source.At(column(x + 1), row(y + 1)), place_x, place_y, mixed);
}

// `mixed`: kChannels values for each place.
void SamplePlaces(const Source& source, const Places& places, int count, float* __restrict mixed) {
  for (int i = 0; i < count; ++i) {
    const int x = places.x[i] >> kPlaceBits;
    const int y = places.y[i] >> kPlaceBits;
    float* const out = mixed + static_cast<ptrdiff_t>(i) * kChannels;
    if (source.HoldsInside(x, y)) {
      const float* top = source.At(x, y);
      const float* bottom = top + source.step;
      Mix(top, top + kChannels, bottom, bottom + kChannels, places.x[i], places.y[i], out);
    } else {
      MixMirrored(source, places.x[i], places.y[i], out);
    }
  }
}

}  // namespace

RowImage Sampled(const cv::Mat& working, const PlaceRow& place_row) {
  const auto read = [=](const PixelRow& part) {
    Places places;
    place_row(part, places);
    const Source source = {working.ptr<float>(), static_cast<ptrdiff_t>(working.step1()), working.cols,
                           working.rows};
    float mixed[kMaxPart * kChannels];
    SamplePlaces(source, places, part.columns, mixed);
    LoadPixels(mixed, part);
  };
  return {working.size(), read};
}

}  // namespace lumvik
