#include "files/image_size.h"

#include <cstdlib>

#include "files/byte_reading.h"
#include "files/jpeg_size.h"
#include "files/tiff_reading.h"

namespace lumvik::host {
namespace {

// Two numbers of `bytes` bytes in a row.
std::optional<ImageSize> SizeAt(std::string_view file, std::uint64_t offset, unsigned bytes,
                                ByteOrder order) {
  const auto width = NumberAt(file, offset, bytes, order);
  const auto height = NumberAt(file, offset + bytes, bytes, order);
  if (!width || !height) return std::nullopt;
  return ImageSize{*width, *height};
}

std::optional<ImageSize> SizeOfJpeg(std::string_view file) {
  const auto size = JpegSizeOf(reinterpret_cast<const std::uint8_t*>(file.data()), file.size());
  if (!size) return std::nullopt;
  return ImageSize{static_cast<std::uint64_t>(size->width), static_cast<std::uint64_t>(size->height)};
}

std::optional<ImageSize> SizeOfTiff(std::string_view file) {
  constexpr std::uint16_t kWidthTag = 256;
  constexpr std::uint16_t kHeightTag = 257;
  const TiffReader tiff(file);
  if (tiff.Directories().empty()) return std::nullopt;
  const TiffIfd& first = tiff.Directories().front();
  const auto number = [&](std::uint16_t tag) -> std::uint64_t {
    const TiffEntry* entry = first.Find(tag);
    const auto numbers = entry == nullptr ? std::vector<std::uint64_t>() : tiff.Numbers(*entry);
    return numbers.empty() ? 0 : numbers.front();
  };
  return ImageSize{number(kWidthTag), number(kHeightTag)};
}

std::optional<ImageSize> SizeOfBmp(std::string_view file) {
  constexpr std::uint64_t kHeaderSizeAt = 14;
  constexpr std::uint64_t kSizeAt = 18;
  constexpr std::uint64_t kOldHeaderSize = 12;  // of OS/2, with shorter fields
  if (NumberAt(file, kHeaderSizeAt, 4, ByteOrder::kLittle) == kOldHeaderSize) {
    return SizeAt(file, kSizeAt, 2, ByteOrder::kLittle);
  }
  auto size = SizeAt(file, kSizeAt, 4, ByteOrder::kLittle);
  // A negative height stores the rows from top to bottom.
  if (size) size->height = static_cast<std::uint64_t>(std::llabs(static_cast<std::int32_t>(size->height)));
  return size;
}

std::optional<ImageSize> SizeOfWebp(std::string_view file) {
  constexpr std::uint64_t kChunkAt = 12;
  constexpr std::uint64_t kLosslessBitsAt = 21;
  constexpr std::uint64_t kExtendedAt = 24;
  constexpr std::uint64_t kLossyAt = 26;
  constexpr std::uint64_t k14Bits = (1U << 14U) - 1;
  const std::string_view chunk = PartOf(file, kChunkAt, 4);
  if (chunk == "VP8L") {
    const auto bits = NumberAt(file, kLosslessBitsAt, 4, ByteOrder::kLittle);
    if (!bits) return std::nullopt;
    return ImageSize{(*bits & k14Bits) + 1, (*bits >> 14U & k14Bits) + 1};
  }
  const bool is_extended = chunk == "VP8X";
  auto size = is_extended ? SizeAt(file, kExtendedAt, 3, ByteOrder::kLittle)
                          : SizeAt(file, kLossyAt, 2, ByteOrder::kLittle);
  if (!size) return std::nullopt;
  if (is_extended) return ImageSize{size->width + 1, size->height + 1};
  return ImageSize{size->width & k14Bits, size->height & k14Bits};
}

std::optional<ImageSize> StatedSize(std::string_view file, lumvik_host_format format) {
  constexpr std::uint64_t kPngSizeAt = 16;
  switch (format) {
    case LUMVIK_HOST_FORMAT_JPEG:
      return SizeOfJpeg(file);
    case LUMVIK_HOST_FORMAT_PNG:
      return SizeAt(file, kPngSizeAt, 4, ByteOrder::kBig);
    case LUMVIK_HOST_FORMAT_TIFF:
      return SizeOfTiff(file);
    case LUMVIK_HOST_FORMAT_BMP:
      return SizeOfBmp(file);
    case LUMVIK_HOST_FORMAT_WEBP:
      return SizeOfWebp(file);
    default:
      return std::nullopt;
  }
}

}  // namespace

std::optional<ImageSize> SizeInHeader(std::string_view file, lumvik_host_format format) {
  const auto size = StatedSize(file, format);
  const bool is_sound =
      size && size->width > 0 && size->height > 0 && size->width <= INT32_MAX && size->height <= INT32_MAX;
  return is_sound ? size : std::nullopt;
}

}  // namespace lumvik::host
