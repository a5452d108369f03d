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

// Positions are checked this many at a time, so that most need no check of their own.
constexpr int kGroup = 16;
static_assert(kMaxPart % kGroup == 0);

// Where the part's positions lie, and the weights of the four pixels around each.
struct Corners {
  uint32_t top_left[kMaxPart];  // pixels from the first one
  float top_left_weight[kMaxPart];
  float top_right_weight[kMaxPart];
  float bottom_left_weight[kMaxPart];
  float bottom_right_weight[kMaxPart];
};

void Weigh(const SamplePositions& positions, int count, uint32_t step, Corners& __restrict corners) {
  constexpr auto kToFraction = static_cast<float>(1.0 / kPositionsPerPixel);
  for (int i = 0; i < count; ++i) {
    const int x = positions.x[i];
    const int y = positions.y[i];
    const float right = static_cast<float>(x & (kPositionsPerPixel - 1)) * kToFraction;
    const float bottom = static_cast<float>(y & (kPositionsPerPixel - 1)) * kToFraction;
    corners.top_left[i] =
        static_cast<uint32_t>(y >> kPositionBits) * step + static_cast<uint32_t>(x >> kPositionBits);
    corners.top_left_weight[i] = (1.0F - bottom) * (1.0F - right);
    corners.top_right_weight[i] = (1.0F - bottom) * right;
    corners.bottom_left_weight[i] = bottom * (1.0F - right);
    corners.bottom_right_weight[i] = bottom * right;
  }
}

// A vector of `count` values; those of the pixels follow one another.
template <typename Value, int count>
struct VectorOf {
  using Type __attribute__((vector_size(count * sizeof(Value)))) = Value;
};
template <typename Value, int count>
using Vector = typename VectorOf<Value, count>::Type;

template <typename Loaded>
Loaded LoadAs(const void* from) {
  Loaded loaded;
  std::memcpy(&loaded, from, sizeof(loaded));
  return loaded;
}

// The pixels at `at(0)`, `at(1)`, ... in one vector.
template <int lanes, typename At>
Lanes<lanes> LoadEach(const float*, const At& at) {
  using One = Lanes<4>;
  const auto one = [&at](int i) { return LoadAs<One>(at(i)); };
  const auto two = [&one](int i) {
    return __builtin_shufflevector(one(i), one(i + 1), 0, 1, 2, 3, 4, 5, 6, 7);
  };
  if constexpr (lanes == 16) {
    return __builtin_shufflevector(two(0), two(2), 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15);
  } else if constexpr (lanes == 8) {
    return two(0);
  } else {
    return one(0);
  }
}

template <int lanes, typename At>
Lanes<lanes> LoadEach(const uint16_t*, const At& at) {
  const auto one = [&at](int i) { return LoadAs<uint64_t>(at(i)); };
  const auto unit = [](const auto& words) {
    const auto codes = LoadAs<Vector<uint16_t, lanes>>(&words);
    return __builtin_convertvector(__builtin_convertvector(codes, Vector<int, lanes>), Lanes<lanes>) *
           kUnitPerCode;
  };
  if constexpr (lanes == 16) {
    return unit(Vector<uint64_t, 4>{one(0), one(1), one(2), one(3)});
  } else if constexpr (lanes == 8) {
    return unit(Vector<uint64_t, 2>{one(0), one(1)});
  } else {
    return unit(one(0));
  }
}

// Each weight from `weights` on, kChannels times.
template <int lanes>
Lanes<lanes> Spread(const float* weights) {
  if constexpr (lanes == 16) {
    const auto each = LoadAs<Lanes<4>>(weights);
    return __builtin_shufflevector(each, each, 0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3);
  } else if constexpr (lanes == 8) {
    return Lanes<8>{weights[0], weights[0], weights[0], weights[0],
                    weights[1], weights[1], weights[1], weights[1]};
  } else {
    return Lanes<4>{weights[0], weights[0], weights[0], weights[0]};
  }
}

template <int lanes>
Lanes<lanes> Mix(const Lanes<lanes>& top_left, const Lanes<lanes>& top_right, const Lanes<lanes>& bottom_left,
                 const Lanes<lanes>& bottom_right, const Corners& corners, int i) {
  return top_left * Spread<lanes>(corners.top_left_weight + i) +
         top_right * Spread<lanes>(corners.top_right_weight + i) +
         bottom_left * Spread<lanes>(corners.bottom_left_weight + i) +
         bottom_right * Spread<lanes>(corners.bottom_right_weight + i);
}

template <typename Sample>
class Sampler {
 public:
  explicit Sampler(const cv::Mat& image)
      : image_(image),
        pixels_(image.ptr<Sample>()),
        step_(static_cast<uint32_t>(image.step / image.elemSize())),
        inner_columns_(static_cast<unsigned>(image.cols - 1)),
        inner_rows_(static_cast<unsigned>(image.rows - 1)) {
    CV_Assert(image.step % image.elemSize() == 0);
  }

  void Read(const RowPart& part, const LocatePart& locate) const {
    SamplePositions positions;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled in by locate
    locate(part, positions);
    Corners corners;  // NOLINT(cppcoreguidelines-pro-type-member-init): filled in by Weigh
    float mixed[kMaxPart * kChannels];
    Vectorized([&, columns = part.columns] { Weigh(positions, columns, step_, corners); });
    VectorizedByLanes([&, columns = int{part.columns}](auto lanes) {
      int i = 0;
      for (; i + kGroup <= columns; i += kGroup) {
        if (AreInside(positions, i)) {
          MixGroup<lanes>(corners, i, mixed + i * kChannels);
        } else {
          for (int k = i; k < i + kGroup; ++k) MixMirrored(positions, corners, k, mixed + k * kChannels);
        }
      }
      for (; i < columns; ++i) MixMirrored(positions, corners, i, mixed + i * kChannels);
    });
    LoadPixels(mixed, part);
  }

 private:
  // Including the neighbors to the right and below.
  bool AreInside(const SamplePositions& positions, int first) const {
    bool outside = false;
    for (int i = first; i < first + kGroup; ++i) {
      outside |= static_cast<unsigned>(positions.x[i] >> kPositionBits) >= inner_columns_;
      outside |= static_cast<unsigned>(positions.y[i] >> kPositionBits) >= inner_rows_;
    }
    return !outside;
  }

  template <int lanes>
  void MixGroup(const Corners& corners, int first, float* mixed) const {
    constexpr int kPixels = lanes / kChannels;
    const Sample* below = pixels_ + static_cast<size_t>(step_) * kChannels;
    for (int i = first; i < first + kGroup; i += kPixels, mixed += lanes) {
      const auto offset = [&corners, i](int k) { return static_cast<size_t>(corners.top_left[i + k]) * kChannels; };
      const Lanes<lanes> mix = Mix<lanes>(
          LoadEach<lanes>(pixels_, [&](int k) { return pixels_ + offset(k); }),
          LoadEach<lanes>(pixels_, [&](int k) { return pixels_ + offset(k) + kChannels; }),
          LoadEach<lanes>(pixels_, [&](int k) { return below + offset(k); }),
          LoadEach<lanes>(pixels_, [&](int k) { return below + offset(k) + kChannels; }), corners, i);
      StoreLanes(mix, mixed);
    }
  }

  void MixMirrored(const SamplePositions& positions, const Corners& corners, int i, float* mixed) const {
    const int x = positions.x[i] >> kPositionBits;
    const int y = positions.y[i] >> kPositionBits;
    const int columns[] = {MirroredAtEdge(x, image_.cols), MirroredAtEdge(x + 1, image_.cols)};
    const int rows[] = {MirroredAtEdge(y, image_.rows), MirroredAtEdge(y + 1, image_.rows)};
    const auto pixel = [&](int right, int below) {
      return LoadEach<kChannels>(pixels_, [&](int) {
        return image_.ptr<Sample>(rows[below]) + static_cast<ptrdiff_t>(columns[right]) * kChannels;
      });
    };
    StoreLanes(Mix<kChannels>(pixel(0, 0), pixel(1, 0), pixel(0, 1), pixel(1, 1), corners, i), mixed);
  }

  cv::Mat image_;
  const Sample* pixels_;
  uint32_t step_;  // in pixels
  unsigned inner_columns_;
  unsigned inner_rows_;
};

template <typename Sample>
RowSource SampledFrom(const cv::Mat& image, const LocatePart& locate) {
  return {image.size(), [sampler = Sampler<Sample>(image), locate](const RowPart& part) {
            sampler.Read(part, locate);
          }};
}

}  // namespace

RowSource Sampled(const cv::Mat& image, const LocatePart& locate) {
  CV_Assert(image.type() == CV_16UC4 || image.type() == CV_32FC4);
  return image.depth() == CV_16U ? SampledFrom<uint16_t>(image, locate) : SampledFrom<float>(image, locate);
}

}  // namespace lumvik
