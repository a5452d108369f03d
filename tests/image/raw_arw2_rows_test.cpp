#include <gtest/gtest.h>

#include <algorithm>
#include <bitset>
#include <numeric>
#include <opencv2/core/utility.hpp>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "image/raw/arw2_rows.h"
#include "support/instruction_sets.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;
using Samples = std::vector<uint16_t>;

constexpr int kGroupBits = 128;
constexpr int kLongestRow = 32 * 40;

// The codes of a group, bit by bit. `next_byte` follows it.
std::array<int, 16> CodesOfGroup(const uint8_t* bytes, uint8_t next_byte) {
  std::bitset<kGroupBits + 8> bits;
  for (size_t b = 0; b < bits.size(); ++b) {
    const uint8_t byte = b < kGroupBits ? bytes[b / 8] : next_byte;
    bits[b] = ((byte >> (b % 8)) & 1) != 0;
  }
  size_t position = 0;
  const auto next = [&](int count) {
    int value = 0;
    for (int b = 0; b < count; ++b) value += static_cast<int>(bits[position++]) << b;
    return value;
  };
  const int max = next(11);
  const int min = next(11);
  const int max_at = next(4);
  const int min_at = next(4);
  int scale = 1;
  while (scale < 16 && 128 * scale <= max - min) scale *= 2;
  std::array<int, 16> codes{};
  for (int i = 0; i < 16; ++i) {
    int& code = codes[static_cast<size_t>(i)];
    if (i == max_at) {
      code = max;
    } else if (i == min_at) {
      code = min;
    } else {
      code = std::min(next(7) * scale + min, 2047);
    }
  }
  return codes;
}

Samples ReferenceRow(const Bytes& row, const Arw2Curve& curve) {
  Samples samples(row.size(), 0);
  size_t group = 0;
  // Groups alternate between the even and the odd columns of 32.
  for (size_t first = 0; first + 31 <= row.size(); first = group / 2 * 32 + group % 2) {
    const size_t end = (group + 1) * 16;
    const auto codes = CodesOfGroup(&row[group * 16], end < row.size() ? row[end] : uint8_t{0});
    for (size_t i = 0; i < codes.size(); ++i) samples[first + 2 * i] = curve[static_cast<size_t>(codes[i])];
    ++group;
  }
  return samples;
}

Arw2Curve RandomCurve() {
  std::mt19937 random(3);
  Arw2Curve curve;
  for (uint16_t& value : curve) value = static_cast<uint16_t>(random());
  return curve;
}

Bytes RandomBytes(int count, unsigned seed) {
  std::mt19937 random(seed);
  Bytes bytes(static_cast<size_t>(count));
  for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
  return bytes;
}

// A row of groups with these extremes and random deltas.
Bytes RowWith(int columns, int max, int min, int max_at, int min_at) {
  Bytes row = RandomBytes(columns, static_cast<unsigned>(max * 31 + min + max_at * 17 + min_at));
  const auto head = static_cast<uint32_t>(max | min << 11 | max_at << 22 | min_at << 26);
  for (size_t group = 0; group + 16 <= row.size(); group += 16) {
    for (size_t b = 0; b < 3; ++b) row[group + b] = static_cast<uint8_t>(head >> 8 * b);
    row[group + 3] = static_cast<uint8_t>((row[group + 3] & 0xC0) | head >> 24);
  }
  return row;
}

class Arw2RowTest : public ::testing::Test {
 protected:
  void ExpectSameRow(const Bytes& row) const {
    const Samples expected = ReferenceRow(row, curve_);
    WithEachInstructionSet([&] {
      Samples samples(row.size(), 0xABCD);
      DecodeArw2Row(row.data(), static_cast<int>(row.size()), curve_, samples.data());
      EXPECT_EQ(samples, expected);
    });
  }

  const Arw2Curve curve_ = RandomCurve();
};

TEST_F(Arw2RowTest, RandomGroups) {
  for (unsigned seed = 0; seed < 20; ++seed) ExpectSameRow(RandomBytes(kLongestRow, seed));
}

TEST_F(Arw2RowTest, EveryWidth) {
  for (int columns = 1; columns < 200; ++columns) {
    SCOPED_TRACE(columns);
    ExpectSameRow(RandomBytes(columns, 5));
  }
  for (const int batch_end : {512, 1024, 1280}) {
    for (int columns = batch_end - 34; columns <= batch_end + 34; ++columns) {
      SCOPED_TRACE(columns);
      ExpectSameRow(RandomBytes(columns, 6));
    }
  }
}

TEST_F(Arw2RowTest, EveryPairOfPositions) {
  for (int max_at = 0; max_at < 16; ++max_at) {
    for (int min_at = 0; min_at < 16; ++min_at) {
      SCOPED_TRACE(std::to_string(max_at) + ", " + std::to_string(min_at));
      ExpectSameRow(RowWith(64, 1500, 300, max_at, min_at));
    }
  }
}

TEST_F(Arw2RowTest, EveryScaleOfTheDeltas) {
  for (const int range : {0, 1, 126, 127, 128, 129, 255, 256, 257, 511, 512, 513, 1023, 1024, 1025, 2047}) {
    SCOPED_TRACE(range);
    ExpectSameRow(RowWith(64, range, 0, 3, 9));
    ExpectSameRow(RowWith(64, 2047, 2047 - range, 9, 3));
    ExpectSameRow(RowWith(64, 2047 - range, 2047, 7, 7));  // the largest is below the smallest
  }
}

// The 15th delta of a group is in the byte after it, which is 0 after the end of the row.
TEST_F(Arw2RowTest, ExtremesAtOnePositionAtTheEndOfTheRow) {
  for (const int columns : {31, 32, 33, 63, 64, 512, 513, 543, 544, 1024}) {
    SCOPED_TRACE(columns);
    ExpectSameRow(RowWith(columns, 900, 100, 15, 15));
    ExpectSameRow(RowWith(columns, 900, 100, 4, 4));
  }
}

class Arw2RowsTest : public Arw2RowTest {
 protected:
  ~Arw2RowsTest() override { cv::setNumThreads(usual_threads_); }

  // Reading throws after `limit` bytes.
  Samples Decode(cv::Size size, const Bytes& file, size_t limit) const {
    Samples samples(file.size(), 0xABCD);
    size_t position = 0;
    const auto read = [&](uint8_t* bytes, size_t count) {
      if (position + count > limit) throw std::runtime_error("end");
      std::copy_n(file.begin() + static_cast<std::ptrdiff_t>(position), count, bytes);
      position += count;
    };
    DecodeArw2Rows(read, size, curve_, samples.data());
    EXPECT_EQ(position, file.size());
    return samples;
  }

 private:
  const int usual_threads_ = cv::getNumThreads();
};

TEST_F(Arw2RowsTest, AnyHeightAndNumberOfThreads) {
  constexpr int kColumns = 95;
  for (const int rows : {1, 2, 31, 32, 33, 64, 100, 257}) {
    const Bytes file = RandomBytes(rows * kColumns, static_cast<unsigned>(rows));
    Samples expected;
    for (int row = 0; row < rows; ++row) {
      const auto begin = file.begin() + row * kColumns;
      const Samples samples = ReferenceRow(Bytes(begin, begin + kColumns), curve_);
      expected.insert(expected.end(), samples.begin(), samples.end());
    }
    for (int threads = 1; threads <= 4; ++threads) {
      SCOPED_TRACE(std::to_string(rows) + " rows, " + std::to_string(threads) + " threads");
      cv::setNumThreads(threads);
      EXPECT_EQ(Decode({kColumns, rows}, file, file.size()), expected);
    }
  }
}

TEST_F(Arw2RowsTest, AFailedReadIsPassedOn) {
  const Bytes file = RandomBytes(64 * 300, 1);
  for (int threads = 1; threads <= 4; ++threads) {
    cv::setNumThreads(threads);
    for (const size_t limit : {size_t{0}, size_t{64 * 40}, file.size() - 1}) {
      EXPECT_THROW(Decode({64, 300}, file, limit), std::runtime_error);
    }
  }
}

}  // namespace
}  // namespace lumvik::test
