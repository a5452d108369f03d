#include "support/lossless_jpeg.h"

#include <cstdlib>

namespace lumvik::test {
namespace {

constexpr int kBits = 14;
constexpr uint8_t kCategories = 16;  // bit lengths of a difference, 0 to 15
constexpr int kCodeBits = 5;         // of each category's code, which is the category itself

// A most-significant-bit-first stream in which a zero byte follows each 0xFF.
class ScanWriter {
 public:
  explicit ScanWriter(std::vector<uint8_t>& bytes) : bytes_(bytes) {}

  void Put(uint32_t value, int bits) {
    for (int bit = bits - 1; bit >= 0; --bit) {
      pending_ = pending_ << 1 | (value >> bit & 1);
      if (++pending_bits_ == 8) Flush();
    }
  }

  void PadWithOnes() {
    while (pending_bits_ != 0) Put(1, 1);
  }

 private:
  void Flush() {
    const auto byte = static_cast<uint8_t>(pending_);
    bytes_.push_back(byte);
    if (byte == 0xFF) bytes_.push_back(0);
    pending_ = 0;
    pending_bits_ = 0;
  }

  std::vector<uint8_t>& bytes_;
  uint32_t pending_ = 0;
  int pending_bits_ = 0;
};

int BitLength(int magnitude) {
  int length = 0;
  for (; magnitude != 0; magnitude >>= 1) ++length;
  return length;
}

void PutDifference(ScanWriter& writer, int difference) {
  const int length = BitLength(std::abs(difference));
  writer.Put(static_cast<uint32_t>(length), kCodeBits);
  const int value = difference < 0 ? difference + (1 << length) - 1 : difference;
  writer.Put(static_cast<uint32_t>(value), length);
}

std::vector<uint8_t> Header(int rows, int columns) {
  const auto high = [](int value) { return static_cast<uint8_t>(value >> 8); };
  const auto low = [](int value) { return static_cast<uint8_t>(value & 0xFF); };
  std::vector<uint8_t> header = {0xFF, 0xD8};
  header.insert(header.end(), {0xFF, 0xC3, 0, 11, kBits, high(rows), low(rows), high(columns), low(columns)});
  header.insert(header.end(), {1, 0, 0x11, 0});
  header.insert(header.end(), {0xFF, 0xC4, 0, 19 + kCategories, 0, 0, 0, 0, 0, kCategories});
  header.insert(header.end(), 11, 0);
  for (uint8_t category = 0; category < kCategories; ++category) header.push_back(category);
  header.insert(header.end(), {0xFF, 0xDA, 0, 8, 1, 0, 0, 1, 0, 0});
  return header;
}

}  // namespace

std::vector<uint8_t> EncodeLosslessJpeg(const cv::Mat& sensor) {
  std::vector<uint8_t> jpeg = Header(sensor.rows, sensor.cols);
  ScanWriter writer(jpeg);
  for (int y = 0; y < sensor.rows; ++y) {
    int predicted = y == 0 ? 1 << (kBits - 1) : sensor.at<uint16_t>(y - 1, 0);
    for (int x = 0; x < sensor.cols; ++x) {
      const int sample = sensor.at<uint16_t>(y, x);
      PutDifference(writer, sample - predicted);
      predicted = sample;
    }
  }
  writer.PadWithOnes();
  jpeg.insert(jpeg.end(), {0xFF, 0xD9});
  return jpeg;
}

}  // namespace lumvik::test
