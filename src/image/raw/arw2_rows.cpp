#include "image/raw/arw2_rows.h"

#include <algorithm>
#include <mutex>
#include <opencv2/core/utility.hpp>
#include <vector>

#include "base/vectorized.h"

namespace lumvik {
namespace {

// A group of 16 samples, from the least significant bit: the largest and the smallest code in 11 bits each,
// their positions in 4 bits each, and for each other position a delta of 7 bits from the smallest code. Those
// are 14 and fill 128 bits; if the extremes share a position, a 15th is taken from the next byte.
constexpr int kGroupSamples = 16;
constexpr int kGroupBytes = 16;
constexpr int kBlockColumns = 2 * kGroupSamples;
constexpr int kCodeBits = 11;
constexpr int kMaxCode = kArw2Codes - 1;
constexpr int kPositionBits = 4;
constexpr int kDeltas = 15;
constexpr int kDeltaBits = 7;
constexpr int kByteBits = 8;
constexpr int kWordBits = 16;
constexpr int kWords = kGroupBytes / 2;
// Deltas are multiplied by 1, 2, 4, 8 or 16, the least that lets them span the codes.
constexpr int kMaxDeltaShift = 4;

constexpr int kRowsPerTask = 32;

// Each step runs over the groups of a batch, so that a vector holds the same field of many groups.
constexpr int kBatchGroups = 32;
constexpr int kBatchBytes = kBatchGroups * kGroupBytes;

using PerGroup = std::array<int16_t, kBatchGroups>;

struct Batch {
  std::array<uint8_t, kBatchBytes + 1> bytes;
  std::array<std::array<uint16_t, kBatchGroups>, kWords + 1> words;
  PerGroup max;
  PerGroup min;
  PerGroup max_position;
  PerGroup min_position;
  PerGroup scale;
  // At d + 2 is delta d, so that every position has the two before it.
  std::array<PerGroup, kDeltas + 3> deltas;
  std::array<PerGroup, kGroupSamples> codes;
};

inline void SplitWords(Batch& batch) {
  for (size_t g = 0; g < kBatchGroups; ++g) {
    const uint8_t* group = batch.bytes.data() + g * kGroupBytes;
    for (size_t w = 0; w < kWords; ++w) {
      batch.words[w][g] = static_cast<uint16_t>(group[2 * w] | group[2 * w + 1] << kByteBits);
    }
    batch.words[kWords][g] = group[kGroupBytes];
  }
}

// The field of `bits` bits from bit `begin` of each group.
inline void Extract(const Batch& batch, int begin, int bits, PerGroup& field) {
  const auto word = static_cast<size_t>(begin / kWordBits);
  const int shift = begin % kWordBits;
  const int mask = (1 << bits) - 1;
  const auto& low = batch.words[word];
  const auto& high = batch.words[std::min<size_t>(word + 1, kWords)];
  for (size_t g = 0; g < kBatchGroups; ++g) {
    const auto from_low = static_cast<uint16_t>(low[g] >> shift);
    const auto from_high = static_cast<uint16_t>(high[g] << (kWordBits - shift));
    field[g] = static_cast<int16_t>((from_low | from_high) & mask);
  }
}

inline void SplitFields(Batch& batch) {
  int begin = 0;
  const auto next = [&](int bits, PerGroup& field) {
    Extract(batch, begin, bits, field);
    begin += bits;
  };
  next(kCodeBits, batch.max);
  next(kCodeBits, batch.min);
  next(kPositionBits, batch.max_position);
  next(kPositionBits, batch.min_position);
  for (size_t d = 0; d < kDeltas; ++d) next(kDeltaBits, batch.deltas[d + 2]);
}

inline void FindScale(Batch& batch) {
  batch.scale.fill(1);
  for (int shift = 0; shift < kMaxDeltaShift; ++shift) {
    const int bound = 1 << (kDeltaBits + shift);
    for (size_t g = 0; g < kBatchGroups; ++g) {
      const int range = batch.max[g] - batch.min[g];
      batch.scale[g] = static_cast<int16_t>(batch.scale[g] + (range >= bound ? 1 << shift : 0));
    }
  }
}

// Every position after an extreme takes the delta of one position earlier.
inline void RestoreCodes(Batch& batch) {
  for (size_t i = 0; i < kGroupSamples; ++i) {
    const PerGroup& deltas = batch.deltas[i + 2];
    const PerGroup& after_one = batch.deltas[i + 1];
    const PerGroup& after_both = batch.deltas[i];
    const auto position = static_cast<int16_t>(i);
    for (size_t g = 0; g < kBatchGroups; ++g) {
      const int16_t max = batch.max[g];
      const int16_t min = batch.min[g];
      const int16_t max_at = batch.max_position[g];
      const int16_t min_at = batch.min_position[g];
      const std::array<int16_t, 3> delta = {deltas[g], after_one[g], after_both[g]};
      // Extremes that share a position take the place of one delta only.
      const bool is_after_max = position > max_at;
      const bool is_after_min = position > min_at && min_at != max_at;
      int16_t d = is_after_max != is_after_min ? delta[1] : delta[0];
      d = is_after_max && is_after_min ? delta[2] : d;
      int16_t code = std::min(static_cast<int16_t>(d * batch.scale[g] + min), int16_t{kMaxCode});
      code = position == min_at ? min : code;
      code = position == max_at ? max : code;
      batch.codes[i][g] = code;
    }
  }
}

// `groups` may be odd: the last block of a row then lacks its odd columns.
inline void StoreSamples(const Batch& batch, int groups, const Arw2Curve& curve, uint16_t* samples) {
  const auto value = [&](size_t i, size_t g) { return curve[static_cast<size_t>(batch.codes[i][g])]; };
  const auto count = static_cast<size_t>(groups);
  size_t g = 0;
  for (; g + 1 < count; g += 2, samples += kBlockColumns) {
    for (size_t i = 0; i < kGroupSamples; ++i) {
      samples[2 * i] = value(i, g);
      samples[2 * i + 1] = value(i, g + 1);
    }
  }
  if (g == count) return;
  for (size_t i = 0; i < kGroupSamples; ++i) samples[2 * i] = value(i, g);
}

}  // namespace

void DecodeArw2Row(const uint8_t* bytes, int columns, const Arw2Curve& curve, uint16_t* samples) {
  const int blocks = columns / kBlockColumns;
  const int rest = columns % kBlockColumns;
  const int groups = 2 * blocks + (rest == kBlockColumns - 1 ? 1 : 0);
  std::fill(samples + blocks * kBlockColumns, samples + columns, uint16_t{0});
  Vectorized([=, &curve] {
    Batch batch{};
    for (int group = 0; group < groups; group += kBatchGroups) {
      const int begin = group * kGroupBytes;
      const int count = std::min(columns - begin, kBatchBytes + 1);
      std::copy_n(bytes + begin, count, batch.bytes.begin());
      std::fill(batch.bytes.begin() + count, batch.bytes.end(), uint8_t{0});
      SplitWords(batch);
      SplitFields(batch);
      FindScale(batch);
      RestoreCodes(batch);
      StoreSamples(batch, std::min(groups - group, kBatchGroups), curve, samples + group * kGroupSamples);
    }
  });
}

void DecodeArw2Rows(const ReadNextBytes& read, cv::Size size, const Arw2Curve& curve, uint16_t* samples) {
  const int tasks = (size.height + kRowsPerTask - 1) / kRowsPerTask;
  const auto columns = static_cast<size_t>(size.width);
  std::mutex reading;
  int next_row = 0;
  cv::parallel_for_(cv::Range(0, tasks), [&](const cv::Range& range) {
    std::vector<uint8_t> bytes(columns * kRowsPerTask);
    for (int task = range.start; task < range.end; ++task) {
      int first = 0;
      int last = 0;
      {
        const std::lock_guard<std::mutex> lock(reading);
        first = next_row;
        last = next_row = std::min(first + kRowsPerTask, size.height);
        read(bytes.data(), columns * static_cast<size_t>(last - first));
      }
      for (int row = first; row < last; ++row) {
        DecodeArw2Row(bytes.data() + static_cast<size_t>(row - first) * columns, size.width, curve,
                      samples + static_cast<size_t>(row) * columns);
      }
    }
  });
}

}  // namespace lumvik
