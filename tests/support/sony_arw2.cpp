#include "support/sony_arw2.h"

#include <algorithm>

namespace lumvik::test {
namespace {

constexpr int kBlockSamples = 16;
constexpr int kBlockBytes = 16;
constexpr int kCodes = 2048;  // 11 bits
constexpr int kLinearValues = 16384;
constexpr int kMaxDelta = 127;
constexpr int kMaxShift = 4;

using CodeTable = std::vector<uint16_t>;

// The linear value of each 11-bit code: every second value of the 12-bit curve.
CodeTable LinearCodes() {
  CodeTable linear(kCodes);
  int value = 0;
  int slope_bits = 0;
  for (int index = 1; index < 2 * kCodes - 1; ++index) {
    const auto knee = static_cast<size_t>(slope_bits);
    if (knee < kArw2CurveKnees.size() && index > kArw2CurveKnees[knee] / 4) ++slope_bits;
    value += 1 << slope_bits;
    if (index % 2 == 0) linear[static_cast<size_t>(index / 2)] = static_cast<uint16_t>(value);
  }
  return linear;
}

// The nearest code for every linear value.
CodeTable CodeFromLinear() {
  const CodeTable linear = LinearCodes();
  CodeTable codes(kLinearValues);
  size_t code = 0;
  for (size_t value = 0; value < codes.size(); ++value) {
    while (code + 1 < linear.size() && 2 * value > size_t{linear[code]} + linear[code + 1]) ++code;
    codes[value] = static_cast<uint16_t>(code);
  }
  return codes;
}

// Appends bit fields to a zeroed block, least significant bit first.
class BitWriter {
 public:
  explicit BitWriter(uint8_t* block) : block_(block) {}
  void Put(int value, int bits) {
    auto rest = static_cast<uint32_t>(value) << (position_ % 8);
    for (int byte = position_ / 8; rest != 0; ++byte, rest >>= 8) block_[byte] |= static_cast<uint8_t>(rest);
    position_ += bits;
  }

 private:
  uint8_t* block_;
  int position_ = 0;
};

// Stores the largest and the smallest code with their positions, and the other fourteen as 7-bit steps above
// the smallest.
void EncodeBlock(const std::array<int, kBlockSamples>& codes, uint8_t* block) {
  auto largest = std::max_element(codes.begin(), codes.end());
  auto smallest = std::min_element(codes.begin(), codes.end());
  if (largest == smallest) ++smallest;  // all equal: the format still needs two positions
  int shift = 0;
  while (shift < kMaxShift && (kMaxDelta + 1) << shift <= *largest - *smallest) ++shift;

  BitWriter bits(block);
  bits.Put(*largest, 11);
  bits.Put(*smallest, 11);
  bits.Put(static_cast<int>(largest - codes.begin()), 4);
  bits.Put(static_cast<int>(smallest - codes.begin()), 4);
  for (auto code = codes.begin(); code != codes.end(); ++code) {
    if (code == largest || code == smallest) continue;
    const int rounding = (1 << shift) >> 1;
    bits.Put(std::min((*code - *smallest + rounding) >> shift, kMaxDelta), 7);
  }
}

}  // namespace

std::vector<uint8_t> EncodeArw2(const cv::Mat& sensor) {
  CV_Assert(sensor.type() == CV_16UC1 && sensor.cols % kArw2GroupColumns == 0);
  static const CodeTable kCodeOf = CodeFromLinear();
  std::vector<uint8_t> bytes(sensor.total());
  uint8_t* block = bytes.data();
  std::array<int, kBlockSamples> codes;
  for (int row = 0; row < sensor.rows; ++row) {
    const auto* samples = sensor.ptr<uint16_t>(row);
    for (int group = 0; group < sensor.cols; group += kArw2GroupColumns) {
      for (int parity = 0; parity < 2; ++parity) {  // a block holds one color of the row
        for (int i = 0; i < kBlockSamples; ++i) {
          codes[static_cast<size_t>(i)] = kCodeOf[samples[group + parity + 2 * i]];
        }
        EncodeBlock(codes, block);
        block += kBlockBytes;
      }
    }
  }
  return bytes;
}

}  // namespace lumvik::test
