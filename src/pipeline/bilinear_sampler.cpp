#include "pipeline/bilinear_sampler.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "base/code_scale.h"
#include "pipeline/mirrored_border.h"
#include "pipeline/packed_rows.h"
#include "pipeline/row_transform.h"

namespace lumvik {
namespace {

constexpr int kPositionBits = 5;
static_assert(1 << kPositionBits == kPositionsPerPixel);

// Positions are checked this many at a time.
constexpr int kGroup = 16;
static_assert(kMaxPart % kGroup == 0);

// The four pixels around each position: the left ones, counted from the first pixel of the tile, and the
// weights.
struct Corners {
  uint32_t top_left[kMaxPart];
  uint32_t bottom_left[kMaxPart];
  float top_left_weight[kMaxPart];
  float top_right_weight[kMaxPart];
  float bottom_left_weight[kMaxPart];
  float bottom_right_weight[kMaxPart];
};

void FindCorners(const SamplePositions& positions, int count, cv::Point origin, uint32_t step,
                 Corners& __restrict corners) {
  constexpr auto kToFraction = static_cast<float>(1.0 / kPositionsPerPixel);
  for (int i = 0; i < count; ++i) {
    const int x = positions.x[i];
    const int y = positions.y[i];
    const float right = static_cast<float>(x & (kPositionsPerPixel - 1)) * kToFraction;
    const float bottom = static_cast<float>(y & (kPositionsPerPixel - 1)) * kToFraction;
    const uint32_t row = static_cast<uint32_t>((y >> kPositionBits) - origin.y) * step;
    corners.top_left[i] = row + static_cast<uint32_t>((x >> kPositionBits) - origin.x);
    corners.bottom_left[i] = corners.top_left[i] + step;
    corners.top_left_weight[i] = (1.0F - bottom) * (1.0F - right);
    corners.top_right_weight[i] = (1.0F - bottom) * right;
    corners.bottom_left_weight[i] = bottom * (1.0F - right);
    corners.bottom_right_weight[i] = bottom * right;
  }
}

// The lower or upper halves of each four values of two vectors, alternating.
template <int lanes>
[[gnu::always_inline]] inline Lanes<lanes> InterleaveLow(const Lanes<lanes>& a, const Lanes<lanes>& b) {
  if constexpr (lanes == 16) {
    return __builtin_shufflevector(a, b, 0, 16, 1, 17, 4, 20, 5, 21, 8, 24, 9, 25, 12, 28, 13, 29);
  } else if constexpr (lanes == 8) {
    return __builtin_shufflevector(a, b, 0, 8, 1, 9, 4, 12, 5, 13);
  } else {
    return __builtin_shufflevector(a, b, 0, 4, 1, 5);
  }
}

template <int lanes>
[[gnu::always_inline]] inline Lanes<lanes> InterleaveHigh(const Lanes<lanes>& a, const Lanes<lanes>& b) {
  if constexpr (lanes == 16) {
    return __builtin_shufflevector(a, b, 2, 18, 3, 19, 6, 22, 7, 23, 10, 26, 11, 27, 14, 30, 15, 31);
  } else if constexpr (lanes == 8) {
    return __builtin_shufflevector(a, b, 2, 10, 3, 11, 6, 14, 7, 15);
  } else {
    return __builtin_shufflevector(a, b, 2, 6, 3, 7);
  }
}

// Four values at each of at(i), at(i + 4), ... in one vector.
template <int lanes, typename At>
[[gnu::always_inline]] inline Lanes<lanes> LoadEveryFourth(const At& at, int i) {
  const auto one = [&at](int k) __attribute__((always_inline)) {
    return LoadLanes<4>(at(k));
  };
  const auto two = [&one](int k) __attribute__((always_inline)) {
    return __builtin_shufflevector(one(k), one(k + 4), 0, 1, 2, 3, 4, 5, 6, 7);
  };
  if constexpr (lanes == 16) {
    return __builtin_shufflevector(two(i), two(i + 8), 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  } else if constexpr (lanes == 8) {
    return two(i);
  } else {
    return one(i);
  }
}

// Vectors of the first, second, third and fourth of the values at at(0), at(1), ..., at(lanes - 1).
template <int lanes>
struct Four {
  Lanes<lanes> at[4];
};

template <int lanes, typename At>
[[gnu::always_inline]] inline Four<lanes> LoadTransposed(const At& at) {
  const auto a = LoadEveryFourth<lanes>(at, 0);
  const auto b = LoadEveryFourth<lanes>(at, 1);
  const auto c = LoadEveryFourth<lanes>(at, 2);
  const auto d = LoadEveryFourth<lanes>(at, 3);
  const auto low_ac = InterleaveLow<lanes>(a, c);
  const auto low_bd = InterleaveLow<lanes>(b, d);
  const auto high_ac = InterleaveHigh<lanes>(a, c);
  const auto high_bd = InterleaveHigh<lanes>(b, d);
  return {{InterleaveLow<lanes>(low_ac, low_bd), InterleaveHigh<lanes>(low_ac, low_bd),
           InterleaveLow<lanes>(high_ac, high_bd), InterleaveHigh<lanes>(high_ac, high_bd)}};
}

// The channels of pairs of neighboring pixels.
template <int lanes>
struct Pairs {
  Four<lanes> left;
  Four<lanes> right;
};

template <int lanes, typename At>
[[gnu::always_inline]] inline Pairs<lanes> LoadPairs(const At& at, const float* /*type*/) {
  return {LoadTransposed<lanes>(at), LoadTransposed<lanes>([&at](int i) { return at(i) + kChannels; })};
}

// As many words of 32 bits.
template <int lanes>
struct WordsOf {
  using Type __attribute__((vector_size(lanes * sizeof(int)))) = int;
};

// Two pixels of 16 bits are four words of 32.
template <int lanes, typename At>
[[gnu::always_inline]] inline Pairs<lanes> LoadPairs(const At& at, const uint16_t* /*type*/) {
  using Words = typename WordsOf<lanes>::Type;
  const Four<lanes> words =
      LoadTransposed<lanes>([&at](int i) { return reinterpret_cast<const float*>(at(i)); });
  const auto channels =
      [](const Lanes<lanes>& red_green, const Lanes<lanes>& blue_alpha) __attribute__((always_inline)) {
    const auto unit = [](const Words& codes) __attribute__((always_inline)) {
      return __builtin_convertvector(codes & 0xFFFF, Lanes<lanes>) * kUnitPerCode;
    };
    const auto low = reinterpret_cast<Words>(red_green);
    const auto high = reinterpret_cast<Words>(blue_alpha);
    return Four<lanes>{{unit(low), unit(low >> 16), unit(high), unit(high >> 16)}};
  };
  return {channels(words.at[0], words.at[1]), channels(words.at[2], words.at[3])};
}

template <typename Sample>
class PixelSampler {
 public:
  PixelSampler(const ImageTile& tile, cv::Size frame)
      : tile_(tile),
        frame_(frame),
        pixels_(tile.pixels.ptr<Sample>()),
        step_(static_cast<uint32_t>(tile.pixels.step / tile.pixels.elemSize())),
        inner_columns_(static_cast<unsigned>(frame.width - 1)),
        inner_rows_(static_cast<unsigned>(frame.height - 1)) {
    CV_Assert(tile.pixels.step % tile.pixels.elemSize() == 0);
  }

  void Read(const RowPart& part, const SamplePositions& positions) const {
    Corners corners;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled in by FindCorners
    Vectorized(
        [&, columns = part.columns] { FindCorners(positions, columns, tile_.origin, step_, corners); });
    VectorizedByLanes([&](auto lanes) {
      const RowPart to = part;
      const bool all_inside = AreInside(positions, 0, to.columns);
      int i = 0;
      for (; i + kGroup <= to.columns; i += kGroup) {
        if (all_inside || AreInside(positions, i, i + kGroup)) {
          PrefetchBelow(corners, i);
          for (int k = i; k < i + kGroup; k += lanes) MixVector<lanes>(corners, k, to);
        } else {
          for (int k = i; k < i + kGroup; ++k) MixMirrored(positions, corners, k, to);
        }
      }
      for (; i < to.columns; ++i) MixMirrored(positions, corners, i, to);
    });
  }

 private:
  // Including the neighbors to the right and below.
  bool AreInside(const SamplePositions& positions, int first, int last) const {
    unsigned outside = 0;
    for (int i = first; i < last; ++i) {
      outside |= static_cast<unsigned>(positions.x[i] >> kPositionBits) >= inner_columns_ ? 1U : 0U;
      outside |= static_cast<unsigned>(positions.y[i] >> kPositionBits) >= inner_rows_ ? 1U : 0U;
    }
    return outside == 0;
  }

  // Most positions of the next row are there, on other pages, which the hardware prefetcher does not reach.
  [[gnu::always_inline]] inline void PrefetchBelow(const Corners& corners, int first) const {
    constexpr int kCacheLine = 64;
    constexpr int kPixelsPerLine = kCacheLine / static_cast<int>(sizeof(Sample)) / kChannels;
    for (int i = first; i < first + kGroup; i += kPixelsPerLine) {
      __builtin_prefetch(pixels_ + static_cast<size_t>(corners.bottom_left[i] + step_) * kChannels);
    }
  }

  template <int lanes>
  [[gnu::always_inline]] inline void MixVector(const Corners& corners, int first, const RowPart& to) const {
    const auto pixels_at = [this](const uint32_t* offsets) {
      return [this, offsets](int i) { return pixels_ + static_cast<size_t>(offsets[i]) * kChannels; };
    };
    const Pairs<lanes> top = LoadPairs<lanes>(pixels_at(corners.top_left + first), pixels_);
    const Pairs<lanes> bottom = LoadPairs<lanes>(pixels_at(corners.bottom_left + first), pixels_);
    const auto top_left = LoadLanes<lanes>(corners.top_left_weight + first);
    const auto top_right = LoadLanes<lanes>(corners.top_right_weight + first);
    const auto bottom_left = LoadLanes<lanes>(corners.bottom_left_weight + first);
    const auto bottom_right = LoadLanes<lanes>(corners.bottom_right_weight + first);
    const auto mix = [&](int channel) __attribute__((always_inline)) {
      return top.left.at[channel] * top_left + top.right.at[channel] * top_right +
             bottom.left.at[channel] * bottom_left + bottom.right.at[channel] * bottom_right;
    };
    StoreLanes(mix(0), to.red + first);
    StoreLanes(mix(1), to.green + first);
    StoreLanes(mix(2), to.blue + first);
    StoreLanes(mix(3), to.alpha + first);
  }

  void MixMirrored(const SamplePositions& positions, const Corners& corners, int i, const RowPart& to) const {
    const int x = positions.x[i] >> kPositionBits;
    const int y = positions.y[i] >> kPositionBits;
    const int left = ColumnOf(x) * kChannels;
    const int right = ColumnOf(x + 1) * kChannels;
    const auto* top = tile_.pixels.ptr<Sample>(RowOf(y));
    const auto* bottom = tile_.pixels.ptr<Sample>(RowOf(y + 1));
    const auto mix = [&](int channel) {
      return Unit(top[left + channel]) * corners.top_left_weight[i] +
             Unit(top[right + channel]) * corners.top_right_weight[i] +
             Unit(bottom[left + channel]) * corners.bottom_left_weight[i] +
             Unit(bottom[right + channel]) * corners.bottom_right_weight[i];
    };
    to.red[i] = mix(0);
    to.green[i] = mix(1);
    to.blue[i] = mix(2);
    to.alpha[i] = mix(3);
  }

  // In the tile.
  int ColumnOf(int x) const { return MirroredAtEdge(x, frame_.width) - tile_.origin.x; }
  int RowOf(int y) const { return MirroredAtEdge(y, frame_.height) - tile_.origin.y; }

  static float Unit(float value) { return value; }
  static float Unit(uint16_t code) { return static_cast<float>(code) * kUnitPerCode; }

  const ImageTile& tile_;
  cv::Size frame_;
  const Sample* pixels_;
  uint32_t step_;  // in pixels
  unsigned inner_columns_;
  unsigned inner_rows_;
};

// The pixels around positions from `least` to `most`, of `count` that are mirrored at the edge.
cv::Range PixelsAround(int least, int most, int count) {
  const int first = least >> kPositionBits;
  const int last = (most >> kPositionBits) + 1;
  const int mirrored_first = MirroredAtEdge(first, count);
  const int mirrored_last = MirroredAtEdge(last, count);
  const cv::Range between(std::min(mirrored_first, mirrored_last),
                          std::max(mirrored_first, mirrored_last) + 1);
  const auto reflection_of = [count](int at) { return at >= 0 ? at / count : -1 - (-1 - at) / count; };
  switch (reflection_of(last) - reflection_of(first)) {
    case 0:
      return between;
    case 1:  // around one edge
      return reflection_of(last) % 2 == 0 ? cv::Range(0, between.end) : cv::Range(between.start, count);
    default:
      return {0, count};
  }
}

cv::Range PixelsAround(const int* positions, int columns, int count) {
  int least = 0;
  int most = 0;
  Vectorized([&] {
    // Locals, which stay in registers.
    int smallest = positions[0];
    int largest = positions[0];
    for (int i = 0; i < columns; ++i) {
      smallest = std::min(smallest, positions[i]);
      largest = std::max(largest, positions[i]);
    }
    least = smallest;
    most = largest;
  });
  return PixelsAround(least, most, count);
}

}  // namespace

FrameTransform BilinearSampling(cv::Size frame, const LocatePart& locate) {
  const auto needs = [=](const RowPart& part) {
    SamplePositions positions;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled in by locate
    locate(part, positions);
    const cv::Range columns = PixelsAround(positions.x, part.columns, frame.width);
    const cv::Range rows = PixelsAround(positions.y, part.columns, frame.height);
    return cv::Rect(columns.start, rows.start, columns.size(), rows.size());
  };
  const auto read = [=](const ImageTile& tile, const RowPart& part) {
    SamplePositions positions;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled in by locate
    locate(part, positions);
    if (tile.pixels.depth() == CV_16U) {
      PixelSampler<uint16_t>(tile, frame).Read(part, positions);
    } else {
      PixelSampler<float>(tile, frame).Read(part, positions);
    }
  };
  return {needs, read};
}

}  // namespace lumvik
