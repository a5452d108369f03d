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

// Where the parts of rows come from and go to. Read fills a part's colours and its alpha, Write takes them.

// The rows of a matrix.
template <typename Sample>
class Rows {
 public:
  explicit Rows(const cv::Mat& image) : data_(image.data), step_(image.step) {}

  Sample* At(const PixelRow& part) const {
    return reinterpret_cast<Sample*>(data_ + step_ * static_cast<size_t>(part.y));
  }

 private:
  uint8_t* data_;
  size_t step_;
};

template <typename Sample>
class Packed {
 public:
  explicit Packed(const cv::Mat& image) : rows_(image) {}

  void Read(const PixelRow& part, float* alpha) const {
    const Sample* from = rows_.At(part) + static_cast<ptrdiff_t>(kChannels) * part.x;
    Vectorized([=] { Load(from, part, alpha); });
  }

  void Write(const PixelRow& part, const float* alpha) const {
    Sample* to = rows_.At(part) + static_cast<ptrdiff_t>(kChannels) * part.x;
    Vectorized([=] { Store(part, alpha, to); });
  }

 private:
  Rows<Sample> rows_;
};

class Planar {
 public:
  explicit Planar(const ColorPlanes& planes) : red_(planes.red), green_(planes.green), blue_(planes.blue) {}

  void Read(const PixelRow& part, float* /*alpha*/) const {
    std::copy_n(red_.At(part) + part.x, part.columns, part.red);
    std::copy_n(green_.At(part) + part.x, part.columns, part.green);
    std::copy_n(blue_.At(part) + part.x, part.columns, part.blue);
  }

  void Write(const PixelRow& part, const float* /*alpha*/) const {
    std::copy_n(part.red, part.columns, red_.At(part) + part.x);
    std::copy_n(part.green, part.columns, green_.At(part) + part.x);
    std::copy_n(part.blue, part.columns, blue_.At(part) + part.x);
  }

 private:
  Rows<float> red_;
  Rows<float> green_;
  Rows<float> blue_;
};

// The colours from planes, the alpha from a packed image.
template <typename Sample>
class PlanarWithAlpha {
 public:
  PlanarWithAlpha(const ColorPlanes& planes, const cv::Mat& alpha) : planes_(planes), packed_(alpha) {}

  void Read(const PixelRow& part, float* alpha) const {
    packed_.Read(part, alpha);
    planes_.Read(part, alpha);
  }

 private:
  Planar planes_;
  Packed<Sample> packed_;
};

template <typename Reader, typename Writer>
void RunRow(const Reader& reader, const RowKernels& kernels, const Writer& writer, int columns, int y) {
  alignas(64) float planes[kChannels][kMaxPart];
  float* const alpha = planes[3];
  for (int x = 0; x < columns; x += kMaxPart) {
    const PixelRow part{planes[0], planes[1], planes[2], std::min(kMaxPart, columns - x), x, y};
    reader.Read(part, alpha);
    for (const RowKernel& kernel : kernels) kernel(part);
    writer.Write(part, alpha);
  }
}

template <typename Reader, typename Writer>
void RunRows(cv::Size size, const Reader& reader, const RowKernels& kernels, const Writer& writer,
             bool in_place) {
  const auto run_row = [&](int y) { RunRow(reader, kernels, writer, size.width, y); };
  try {
    ForEachRow(size.height, run_row);
  } catch (const std::bad_alloc&) {
    if (in_place) throw;
    for (int y = 0; y < size.height; ++y) run_row(y);
  }
}

bool IsCodes(const cv::Mat& packed) {
  CV_Assert(packed.type() == CV_16UC4 || packed.type() == CV_32FC4);
  return packed.depth() == CV_16U;
}

// Calls `run` with the packed image as the right reader or writer.
template <typename Run>
void WithPacked(const cv::Mat& image, const Run& run) {
  if (IsCodes(image)) {
    run(Packed<uint16_t>(image));
  } else {
    run(Packed<float>(image));
  }
}

}  // namespace

void RunRowKernels(const cv::Mat& input, const RowKernels& kernels, cv::Mat& output) {
  CV_Assert(input.size() == output.size());
  WithPacked(input, [&](const auto& reader) {
    WithPacked(output, [&](const auto& writer) {
      RunRows(input.size(), reader, kernels, writer, output.data == input.data);
    });
  });
}

void RunRowKernels(const cv::Mat& input, const RowKernels& kernels, ColorPlanes& output) {
  WithPacked(input,
             [&](const auto& reader) { RunRows(input.size(), reader, kernels, Planar(output), false); });
}

void RunRowKernels(const ColorPlanes& input, const cv::Mat& alpha, const RowKernels& kernels,
                   cv::Mat& output) {
  WithPacked(output, [&](const auto& writer) {
    if (IsCodes(alpha)) {
      RunRows(input.Size(), PlanarWithAlpha<uint16_t>(input, alpha), kernels, writer, false);
    } else {
      RunRows(input.Size(), PlanarWithAlpha<float>(input, alpha), kernels, writer, false);
    }
  });
}

void RunRowKernels(ColorPlanes& in_place, const RowKernels& kernels) {
  const Planar planes(in_place);
  RunRows(in_place.Size(), planes, kernels, planes, true);
}

}  // namespace lumvik
