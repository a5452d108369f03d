#include "pipeline/row_image.h"

#include <cstdint>
#include <cstring>

#include "base/code_scale.h"
#include "base/luminance.h"
#include "pipeline/pixel_math.h"

namespace lumvik {
namespace {

// The 16 bits at `shift` of a pixel read as one word, which vectorizes better than four reads.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "a pixel's red is the lowest part of its word");
float UnitAt(uint64_t pixel, int shift) {
  return static_cast<float>(static_cast<int>((pixel >> shift) & 0xFFFF)) * kUnitPerCode;
}

// Rounds to nearest, ties to even, as OpenCV's conversion does: the low bits of a float near 2^23 are a whole
// number.
uint32_t ToCode(float value) {
  constexpr float kRoundingShift = 8388608.0F;                            // 2^23
  const float shifted = SaturateUnit(value) * kMaxCode + kRoundingShift;  // a NaN becomes 0
  uint32_t bits = 0;
  std::memcpy(&bits, &shifted, sizeof(bits));
  return bits & 0xFFFF;
}

void Load(const uint16_t* from, const PixelRow& row) {
  for (int x = 0; x < row.columns; ++x) {
    uint64_t pixel = 0;
    std::memcpy(&pixel, from + kChannels * x, sizeof(pixel));
    row.red[x] = UnitAt(pixel, 0);
    row.green[x] = UnitAt(pixel, 16);
    row.blue[x] = UnitAt(pixel, 32);
    row.alpha[x] = UnitAt(pixel, 48);
  }
}

void Load(const float* from, const PixelRow& row) {
  for (int x = 0; x < row.columns; ++x) {
    row.red[x] = from[kChannels * x];
    row.green[x] = from[kChannels * x + 1];
    row.blue[x] = from[kChannels * x + 2];
    row.alpha[x] = from[kChannels * x + 3];
  }
}

// Two words a pixel vectorize better than four samples.
void Store(const PixelRow& row, uint16_t* __restrict to) {
  for (int x = 0; x < row.columns; ++x) {
    const uint32_t red_green = ToCode(row.red[x]) | ToCode(row.green[x]) << 16;
    const uint32_t blue_alpha = ToCode(row.blue[x]) | ToCode(row.alpha[x]) << 16;
    std::memcpy(to + kChannels * x, &red_green, sizeof(red_green));
    std::memcpy(to + kChannels * x + 2, &blue_alpha, sizeof(blue_alpha));
  }
}

void Store(const PixelRow& row, float* __restrict to) {
  for (int x = 0; x < row.columns; ++x) {
    to[kChannels * x] = row.red[x];
    to[kChannels * x + 1] = row.green[x];
    to[kChannels * x + 2] = row.blue[x];
    to[kChannels * x + 3] = row.alpha[x];
  }
}

template <typename Sample>
Sample* PixelsOf(const cv::Mat& packed, const PixelRow& row) {
  return reinterpret_cast<Sample*>(packed.data + packed.step * static_cast<size_t>(row.y)) +
         static_cast<ptrdiff_t>(kChannels) * row.x;
}

template <typename Sample>
RowKernel Reader(const cv::Mat& packed) {
  return [packed](const PixelRow& row) {
    const Sample* from = PixelsOf<Sample>(packed, row);
    ChangeRow([](const PixelRow& part, const Sample* pixels) { Load(pixels, part); }, row, from);
    FetchNextRow(packed, row);
  };
}

template <typename Sample>
RowKernel Writer(const cv::Mat& packed) {
  return [packed](const PixelRow& row) {
    ChangeRow([](const PixelRow& part, Sample* to) { Store(part, to); }, row, PixelsOf<Sample>(packed, row));
    FetchNextRow(packed, row);
  };
}

bool IsCodes(const cv::Mat& packed) {
  CV_Assert(packed.type() == CV_16UC4 || packed.type() == CV_32FC4);
  return packed.depth() == CV_16U;
}

}  // namespace

RowImage RowsOf(const cv::Mat& packed) {
  return {packed.size(), IsCodes(packed) ? Reader<uint16_t>(packed) : Reader<float>(packed)};
}

void LoadPixels(const float* packed, const PixelRow& part) {
  ChangeRow([](const PixelRow& row, const float* from) { Load(from, row); }, part, packed);
}

RowKernel StoreIn(const cv::Mat& packed) {
  return IsCodes(packed) ? Writer<uint16_t>(packed) : Writer<float>(packed);
}

void WriteLuminance(const PixelRow& row, float* luminance) {
  const auto write = [](const PixelRow& part, float* __restrict out) {
    for (int i = 0; i < part.columns; ++i) out[i] = Luminance(part.red[i], part.green[i], part.blue[i]);
  };
  ChangeRow(write, row, luminance);
}

RowKernel StoreLuminance(const cv::Mat& plane) {
  return [own = plane](const PixelRow& row) mutable { WriteLuminance(row, own.ptr<float>(row.y) + row.x); };
}

}  // namespace lumvik
