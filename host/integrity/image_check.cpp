#include "integrity/image_check.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <opencv2/imgcodecs.hpp>

#include "base/byte_matrix.h"
#include "files/byte_reading.h"

namespace lumvik::host {
namespace {

constexpr std::uint64_t kRiffHeaderSize = 8;

// Of a BMP header; nothing where the file ends.
std::optional<std::uint64_t> BmpField(std::string_view bmp, std::uint64_t offset, unsigned width = 4) {
  return NumberAt(bmp, offset, width, ByteOrder::kLittle);
}

// Where the pixels of an uncompressed BMP end.
std::uint64_t EndOfBmpPixels(std::string_view bmp, std::uint64_t pixels) {
  const auto width = BmpField(bmp, 18);
  const auto height = BmpField(bmp, 22);  // negative: from top to bottom
  const auto bits = BmpField(bmp, 28, 2);
  const auto compression = BmpField(bmp, 30);
  constexpr std::uint64_t kBitFields = 3;
  if (!width || !height || !bits || !compression) return 0;
  if (*compression != 0 && *compression != kBitFields) return 0;
  const auto rows = static_cast<std::uint64_t>(std::llabs(static_cast<std::int32_t>(*height)));
  const std::uint64_t stride = (*width * *bits + 31) / 32 * 4;
  return EndOf(pixels, SizeOf(rows, stride));
}

}  // namespace

std::optional<Damage> CheckBmp(std::string_view bmp) {
  constexpr std::uint64_t kSmallestHeader = 26;
  constexpr std::uint64_t kOldHeaderSize = 12;                // of OS/2, with fields of other sizes
  const std::uint64_t stated = BmpField(bmp, 2).value_or(0);  // often 0
  const std::uint64_t pixels = BmpField(bmp, 10).value_or(0);
  const bool is_old = BmpField(bmp, 14) == kOldHeaderSize;
  const std::uint64_t end = is_old ? pixels : EndOfBmpPixels(bmp, pixels);
  if (auto missing = MissingEnd(bmp.size(), std::max({kSmallestHeader, stated, end}))) return missing;
  return CheckDecodable(bmp, cv::IMREAD_COLOR);
}

std::optional<Damage> CheckWebp(std::string_view webp) {
  const std::uint64_t size = NumberAt(webp, 4, 4, ByteOrder::kLittle).value_or(kRiffHeaderSize);
  if (auto missing = MissingEnd(webp.size(), kRiffHeaderSize + size)) return missing;
  return CheckDecodable(webp, cv::IMREAD_COLOR);
}

std::optional<Damage> CheckDecodable(std::string_view image, int flags) {
  constexpr const char* kUndecodable = "the image data is corrupt";
  if (image.empty()) return Damage{kUndecodable};
  try {
    if (!cv::imdecode(ByteMatrix(image), flags).empty()) return std::nullopt;
  } catch (const cv::Exception& error) {
    if (error.code == cv::Error::StsNoMem) throw std::bad_alloc();
  }
  return Damage{kUndecodable};
}

}  // namespace lumvik::host
