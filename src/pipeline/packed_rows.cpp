#include "pipeline/packed_rows.h"

#include <cstdint>
#include <cstring>

#include "base/code_scale.h"
#include "base/luminance.h"
#include "base/rounding.h"
#include "pipeline/pixel_math.h"
#include "pipeline/row_transform.h"

namespace lumvik {
namespace {

// The 16 bits at `shift` of a pixel read as one word, which vectorizes better than four reads.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "red is the lowest part of a pixel's word");
float UnitAt(uint64_t pixel, int shift) {
  return static_cast<float>(static_cast<int>((pixel >> shift) & 0xFFFF)) * kUnitPerCode;
}

uint32_t ToCode(float value) {
  return RoundToCode(SaturateUnit(value) * kMaxCode);
}

void Load(const uint16_t* from, const RowPart& part) {
  for (int x = 0; x < part.columns; ++x) {
    uint64_t pixel = 0;
    std::memcpy(&pixel, from + kChannels * x, sizeof(pixel));
    part.red[x] = UnitAt(pixel, 0);
    part.green[x] = UnitAt(pixel, 16);
    part.blue[x] = UnitAt(pixel, 32);
    part.alpha[x] = UnitAt(pixel, 48);
  }
}

void Load(const float* from, const RowPart& part) {
  for (int x = 0; x < part.columns; ++x) {
    part.red[x] = from[kChannels * x];
    part.green[x] = from[kChannels * x + 1];
    part.blue[x] = from[kChannels * x + 2];
    part.alpha[x] = from[kChannels * x + 3];
  }
}

// Two words per pixel vectorize better than four samples.
void Store(const RowPart& part, uint16_t* __restrict to) {
  for (int x = 0; x < part.columns; ++x) {
    const uint32_t red_green = ToCode(part.red[x]) | ToCode(part.green[x]) << 16;
    const uint32_t blue_alpha = ToCode(part.blue[x]) | ToCode(part.alpha[x]) << 16;
    std::memcpy(to + kChannels * x, &red_green, sizeof(red_green));
    std::memcpy(to + kChannels * x + 2, &blue_alpha, sizeof(blue_alpha));
  }
}

void Store(const RowPart& part, float* __restrict to) {
  for (int x = 0; x < part.columns; ++x) {
    to[kChannels * x] = part.red[x];
    to[kChannels * x + 1] = part.green[x];
    to[kChannels * x + 2] = part.blue[x];
    to[kChannels * x + 3] = part.alpha[x];
  }
}

template <typename Sample>
void ReadFrom(const cv::Mat& packed, const RowPart& part) {
  ChangePart([](const RowPart& own, const Sample* from) { Load(from, own); }, part,
             static_cast<const Sample*>(PixelsOf<Sample>(packed, part)));
  PrefetchNextRow(packed, part);
}

template <typename Sample>
void WriteTo(const cv::Mat& packed, const RowPart& part) {
  ChangePart([](const RowPart& own, Sample* to) { Store(own, to); }, part, PixelsOf<Sample>(packed, part));
  PrefetchNextRow(packed, part);
}

void CheckType(const cv::Mat& packed) {
  CV_Assert(packed.type() == CV_16UC4 || packed.type() == CV_32FC4);
}

}  // namespace

void ReadPixels(const cv::Mat& packed, const RowPart& part) {
  packed.depth() == CV_16U ? ReadFrom<uint16_t>(packed, part) : ReadFrom<float>(packed, part);
}

void WritePixels(const RowPart& part, const cv::Mat& packed) {
  packed.depth() == CV_16U ? WriteTo<uint16_t>(packed, part) : WriteTo<float>(packed, part);
}

RowSource RowsOf(const cv::Mat& packed) {
  CheckType(packed);
  return {packed.size(), [packed](const RowPart& part) { ReadPixels(packed, part); }};
}

RowSink StoreIn(const cv::Mat& packed) {
  CheckType(packed);
  return {[packed](const RowPart& part) { WritePixels(part, packed); }};
}

void WriteLuminance(const RowPart& part, float* luminance) {
  const auto write = [](const RowPart& own, float* __restrict out) {
    for (int i = 0; i < own.columns; ++i) out[i] = Luminance(own.red[i], own.green[i], own.blue[i]);
  };
  ChangePart(write, part, luminance);
}

RowSink StoreLuminance(const cv::Mat& plane) {
  return {[plane](const RowPart& part) { WriteLuminance(part, PixelsOf<float>(plane, part)); }};
}

}  // namespace lumvik
