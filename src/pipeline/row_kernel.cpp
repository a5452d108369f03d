#include "pipeline/row_kernel.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "pipeline/working_image.h"

namespace lumvik {
namespace {

constexpr float kToUnit = static_cast<float>(1.0 / 65535.0);
constexpr float kFullScale = 65535.0F;

// The 16 bits at `shift` of a pixel read as one word, which vectorises better than four reads.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "a pixel's red is the lowest part of its word");
float UnitAt(uint64_t pixel, int shift) {
  return static_cast<float>(static_cast<int>((pixel >> shift) & 0xFFFF)) * kToUnit;
}

// Rounds to nearest, ties to even, as OpenCV's conversion does: the low bits of a float near 2^23 are a whole
// number.
uint32_t ToCode(float value) {
  constexpr float kRoundingShift = 8388608.0F;  // 2^23
  const float scaled = value * kFullScale;
  const float floored = scaled > 0.0F ? scaled : 0.0F;  // written so that a NaN becomes 0
  const float shifted = (floored < kFullScale ? floored : kFullScale) + kRoundingShift;
  uint32_t bits = 0;
  std::memcpy(&bits, &shifted, sizeof(bits));
  return bits & 0xFFFF;
}

void Load(const uint16_t* from, const PixelRow& row, float* __restrict alpha) {
  for (int x = 0; x < row.columns; ++x) {
    uint64_t pixel = 0;
    std::memcpy(&pixel, from + kChannels * x, sizeof(pixel));
    row.red[x] = UnitAt(pixel, 0);
    row.green[x] = UnitAt(pixel, 16);
    row.blue[x] = UnitAt(pixel, 32);
    alpha[x] = UnitAt(pixel, 48);
  }
}

void Load(const float* from, const PixelRow& row, float* __restrict alpha) {
  for (int x = 0; x < row.columns; ++x) {
    row.red[x] = from[kChannels * x];
    row.green[x] = from[kChannels * x + 1];
    row.blue[x] = from[kChannels * x + 2];
    alpha[x] = from[kChannels * x + 3];
  }
}

// Two words a pixel vectorise better than four samples.
void Store(const PixelRow& row, const float* alpha, uint16_t* __restrict to) {
  for (int x = 0; x < row.columns; ++x) {
    const uint32_t red_green = ToCode(row.red[x]) | ToCode(row.green[x]) << 16;
    const uint32_t blue_alpha = ToCode(row.blue[x]) | ToCode(alpha[x]) << 16;
    std::memcpy(to + kChannels * x, &red_green, sizeof(red_green));
    std::memcpy(to + kChannels * x + 2, &blue_alpha, sizeof(blue_alpha));
  }
}

void Store(const PixelRow& row, const float* alpha, float* __restrict to) {
  for (int x = 0; x < row.columns; ++x) {
    to[kChannels * x] = row.red[x];
    to[kChannels * x + 1] = row.green[x];
    to[kChannels * x + 2] = row.blue[x];
    to[kChannels * x + 3] = alpha[x];
  }
}

template <typename From, typename To>
void RunRow(const From* from, const std::vector<RowKernel>& kernels, To* to, int columns, int y) {
  alignas(64) float planes[kChannels][kMaxPart];
  float* const alpha = planes[3];
  for (int x = 0; x < columns; x += kMaxPart) {
    const PixelRow part{planes[0], planes[1], planes[2], std::min(kMaxPart, columns - x), x, y};
    const From* const part_from = from + static_cast<ptrdiff_t>(kChannels) * x;
    To* const part_to = to + static_cast<ptrdiff_t>(kChannels) * x;
    Vectorized([=] { Load(part_from, part, alpha); });
    for (const RowKernel& kernel : kernels) kernel(part);
    Vectorized([=] { Store(part, alpha, part_to); });
  }
}

template <typename From, typename To>
void RunRows(const cv::Mat& input, const std::vector<RowKernel>& kernels, cv::Mat& output) {
  ForEachRow(input.rows,
             [&](int y) { RunRow(input.ptr<From>(y), kernels, output.ptr<To>(y), input.cols, y); });
}

}  // namespace

void RunRowKernels(const cv::Mat& input, const std::vector<RowKernel>& kernels, cv::Mat& output) {
  const bool from_16_bit = input.depth() == CV_16U;
  const bool to_16_bit = output.depth() == CV_16U;
  CV_Assert(input.channels() == kChannels && output.channels() == kChannels && input.size() == output.size());
  const auto run = from_16_bit ? (to_16_bit ? RunRows<uint16_t, uint16_t> : RunRows<uint16_t, float>)
                               : (to_16_bit ? RunRows<float, uint16_t> : RunRows<float, float>);
  run(input, kernels, output);
}

}  // namespace lumvik
