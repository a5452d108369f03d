// The size of a photograph, from its header.
#include <cstdint>
#include <optional>
#include <string>

#include "api/arguments.h"
#include "api/guard.h"
#include "files/file_reading.h"
#include "files/format.h"
#include "files/image_size.h"
#include "files/tiff_directory.h"
#include "lumvik_host.h"
#include "metadata/raw_facts.h"

namespace lumvik::host {
namespace {

// Where the size is found. Most headers with all their metadata are shorter than the usual size.
constexpr std::size_t kUsualHeaderBytes = std::size_t{256} << 10;
constexpr std::size_t kMaxHeaderBytes = std::size_t{16} << 20;

std::optional<ImageSize> RawSize(const std::string& path) {
  const std::optional<RawFacts> facts = ReadRawFacts(path);
  if (!facts) return std::nullopt;
  return ImageSize{static_cast<std::uint64_t>(facts->width), static_cast<std::uint64_t>(facts->height)};
}

std::optional<ImageSize> OrdinarySize(const std::string& path, lumvik_host_format format) {
  if (format == LUMVIK_HOST_FORMAT_TIFF) return SizeInHeader(ReadFirstTiffDirectory(path), format);
  const auto size = SizeInHeader(ReadBeginning(path, kUsualHeaderBytes), format);
  return size ? size : SizeInHeader(ReadBeginning(path, kMaxHeaderBytes), format);
}

ImageSize ReadImageSize(const std::string& path) {
  const lumvik_host_format format = IdentifyFormat(path, "'" + path + "'");
  const std::optional<ImageSize> size =
      format == LUMVIK_HOST_FORMAT_RAW ? RawSize(path) : OrdinarySize(path, format);
  if (!size) {
    throw Failure(LUMVIK_HOST_DAMAGED, "cannot read the size of '" + path + "': its header is damaged");
  }
  return *size;
}

}  // namespace
}  // namespace lumvik::host

lumvik_host_status lumvik_host_read_size(const char* path, int32_t* width, int32_t* height) {
  using namespace lumvik::host;
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireArgument(width, "width");
    RequireArgument(height, "height");
    const ImageSize size = ReadImageSize(path);
    *width = static_cast<std::int32_t>(size.width);
    *height = static_cast<std::int32_t>(size.height);
  });
}
