#include "image/raw/ahd_rows.h"

#include <algorithm>
#include <array>

namespace lumvik {
namespace {

// How far from a pixel the samples are that it depends on: two for green, one each for red and blue, for the
// differences in Lab and for the sums of their counts.
constexpr int kReach = 5;
// LibRaw interpolates this frame linearly.
constexpr int kFrame = kReach;

// The last `count` rows of a kind, a power of two.
template <typename Row, size_t count>
class Ring {
 public:
  Row& operator[](int row) { return rows_[static_cast<size_t>(row) & (count - 1)]; }

 private:
  std::array<Row, count> rows_ = {};
};

template <typename T>
HalfRows<T> SplitRow(RowArena& arena, int halves) {
  return {{arena.HalfRow<T>(halves), arena.HalfRow<T>(halves)}};
}

RgbRow NewRgbRow(RowArena& arena, int halves) {
  return {{SplitRow<uint16_t>(arena, halves), SplitRow<uint16_t>(arena, halves),
           SplitRow<uint16_t>(arena, halves)}};
}

LabRow NewLabRow(RowArena& arena, int halves) {
  return {SplitRow<int16_t>(arena, halves), SplitRow<int16_t>(arena, halves),
          SplitRow<int16_t>(arena, halves)};
}

DifferenceRow NewDifferenceRow(RowArena& arena, int halves) {
  return {SplitRow<uint16_t>(arena, halves), SplitRow<uint32_t>(arena, halves)};
}

// One image of the two that compete.
struct Candidate {
  Ring<uint16_t*, 4> green;
  Ring<RgbRow, 4> rgb;
  Ring<LabRow, 2> lab;
  Ring<DifferenceRow, 2> to_left;
  Ring<DifferenceRow, 2> to_above;
};

class AhdStrip {
 public:
  AhdStrip(const BayerSensor& sensor, Span rows, Span columns, const RowKernels& kernels, RowArena& arena)
      : sensor_(sensor),
        kernels_(kernels),
        rows_{std::max(rows.begin - kReach, 0), std::min(rows.end + kReach, sensor.height)},
        columns_{std::max(columns.begin - kReach, 0) & ~1, std::min(columns.end + kReach, sensor.width)},
        halves_((columns_.end - columns_.begin + 1) / 2) {
    arena.Restart();
    for (int row = 0; row < 8; ++row) mosaic_[row] = SplitRow<uint16_t>(arena, halves_);
    for (Candidate& candidate : candidates_) Allocate(candidate, arena);
    for (int row = 0; row < 4; ++row) {
      counts_[row] = {{SplitRow<uint8_t>(arena, halves_), SplitRow<uint8_t>(arena, halves_)}};
    }
    chosen_ = NewRgbRow(arena, halves_);
  }

  // Each step works on the last row for which the step before has done the rows around it.
  void Run(Span wanted, const TakeRgbRow& take) {
    for (int row = rows_.begin; row < wanted.end + kReach; ++row) {
      if (Holds(row, 0)) Load(row);
      if (Holds(row - 2, 2)) InterpolateGreen(row - 2);
      if (Holds(row - 3, 3)) InterpolateColors(row - 3);
      if (Holds(row - 4, 4)) CountHomogeneous(row - 4);
      const int done = row - kReach;
      if (done >= wanted.begin) {
        Choose(done);
        take(done, columns_.begin, chosen_);
      }
    }
  }

 private:
  void Allocate(Candidate& candidate, RowArena& arena) const {
    for (int row = 0; row < 4; ++row) {
      candidate.green[row] = arena.HalfRow<uint16_t>(halves_);
      candidate.rgb[row] = NewRgbRow(arena, halves_);
    }
    for (int row = 0; row < 2; ++row) {
      candidate.lab[row] = NewLabRow(arena, halves_);
      candidate.to_left[row] = NewDifferenceRow(arena, halves_);
      candidate.to_above[row] = NewDifferenceRow(arena, halves_);
    }
  }

  // Whether the row is at least `distance` rows inside those that are loaded.
  bool Holds(int row, int distance) const {
    return row >= rows_.begin + distance && row < rows_.end - distance;
  }

  const BayerSite& Site(int row, int column) const { return sensor_.sites[row & 1][column & 1]; }

  int Colored(int row) const { return Site(row, 0).color == kGreen ? 1 : 0; }

  MosaicNeighborhood Around(int row) {
    MosaicNeighborhood neighborhood = {};
    for (int i = 0; i < 5; ++i) {
      const HalfRows<uint16_t>& halves = mosaic_[row - 2 + i];
      neighborhood.rows[i] = {{halves.half[0], halves.half[1]}};
    }
    neighborhood.colored = Colored(row);
    return neighborhood;
  }

  void Load(int row) {
    kernels_.scale(sensor_.samples + row * sensor_.stride + columns_.begin, columns_.end - columns_.begin,
                   sensor_.sites[row & 1], mosaic_[row]);
  }

  void InterpolateGreen(int row) {
    kernels_.green(Around(row), halves_,
                   {{candidates_[kHorizontal].green[row], candidates_[kVertical].green[row]}});
  }

  void InterpolateColors(int row) {
    const SensorColor row_color = Site(row, Colored(row)).color;
    for (Candidate& candidate : candidates_) {
      const uint16_t* const green[3] = {candidate.green[row - 1], candidate.green[row],
                                        candidate.green[row + 1]};
      kernels_.red_and_blue(Around(row), green, halves_, row_color, candidate.rgb[row]);
      kernels_.lab(candidate.rgb[row], halves_, sensor_.xyz_from_camera, sensor_.cube_root,
                   candidate.lab[row]);
      kernels_.differences(candidate.lab[row], candidate.lab[row - 1], halves_, candidate.to_left[row],
                           candidate.to_above[row]);
    }
  }

  void CountHomogeneous(int row) {
    PixelDifferences differences = {};
    for (size_t direction = 0; direction < kDirections; ++direction) {
      Candidate& candidate = candidates_[direction];
      differences.to_left[direction] = candidate.to_left[row];
      differences.to_above[direction] = candidate.to_above[row];
      differences.below_to_here[direction] = candidate.to_above[row + 1];
    }
    kernels_.homogeneity(differences, halves_, counts_[row]);
  }

  void Choose(int row) {
    const bool is_in_frame = row < kFrame || row >= sensor_.height - kFrame;
    if (!is_in_frame) {
      const HomogeneityRow counts[3] = {counts_[row - 1], counts_[row], counts_[row + 1]};
      const RgbRow rgb[kDirections] = {candidates_[kHorizontal].rgb[row], candidates_[kVertical].rgb[row]};
      kernels_.choose(counts, rgb, halves_, chosen_);
    }
    const int right_frame = is_in_frame ? columns_.begin : std::max(sensor_.width - kFrame, kFrame);
    const int left_end = is_in_frame ? 0 : std::min(kFrame, columns_.end);
    for (int x = columns_.begin; x < left_end; ++x) InterpolateLinearly(row, x);
    for (int x = std::max(right_frame, columns_.begin); x < columns_.end; ++x) InterpolateLinearly(row, x);
  }

  // The mean, rounded down, of what a color has among the pixel and its neighbors.
  void InterpolateLinearly(int row, int column) {
    std::array<unsigned, 3> sum = {};
    std::array<unsigned, 3> count = {};
    for (int y = std::max(row - 1, 0); y < std::min(row + 2, sensor_.height); ++y) {
      for (int x = std::max(column - 1, columns_.begin); x < std::min(column + 2, columns_.end); ++x) {
        const auto color = static_cast<size_t>(Site(y, x).color);
        sum[color] += Sample(y, x);
        ++count[color];
      }
    }
    const SensorColor own = Site(row, column).color;
    for (size_t color = 0; color < sum.size(); ++color) {
      uint16_t& pixel = chosen_.color[color].half[column & 1][(column - columns_.begin) >> 1];
      pixel = color == own ? Sample(row, column) : static_cast<uint16_t>(sum[color] / count[color]);
    }
  }

  uint16_t Sample(int row, int column) {
    return mosaic_[row].half[column & 1][(column - columns_.begin) >> 1];
  }

  const BayerSensor& sensor_;
  const RowKernels& kernels_;
  Span rows_;     // that are loaded
  Span columns_;  // likewise, from an even one on
  int halves_;
  Ring<HalfRows<uint16_t>, 8> mosaic_;
  std::array<Candidate, kDirections> candidates_;
  Ring<HomogeneityRow, 4> counts_;
  RgbRow chosen_ = {};
};

}  // namespace

uint8_t* RowArena::Take(size_t bytes) {
  if (used_ == blocks_.size()) blocks_.emplace_back();
  std::vector<uint8_t>& block = blocks_[used_++];
  if (block.size() < bytes) block.assign(bytes, 0);
  return block.data();
}

void DemosaicAhd(const BayerSensor& sensor, Span rows, Span columns, const RowKernels& kernels,
                 RowArena& arena, const TakeRgbRow& take) {
  AhdStrip(sensor, rows, columns, kernels, arena).Run(rows, take);
}

}  // namespace lumvik
