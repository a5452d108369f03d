#include "color/profile_attachment.h"

#include <zlib.h>

#include <cstdint>
#include <new>
#include <utility>

#include "color/embedded_profile.h"
#include "files/image_parts.h"
#include "files/jpeg_segments.h"
#include "files/png_chunks.h"

namespace lumvik::host {
namespace {

// Numbers of parts have one byte.
constexpr std::size_t kMaxParts = 255;
constexpr std::size_t kPartSize = kMaxJpegPayload - kJpegProfileMark.size() - 2;

std::string ProfileSegments(std::string_view icc) {
  const std::size_t count = (icc.size() + kPartSize - 1) / kPartSize;
  std::string segments;
  for (std::size_t i = 0; i < count; ++i) {
    std::string payload(kJpegProfileMark);
    payload.push_back(static_cast<char>(i + 1));
    payload.push_back(static_cast<char>(count));
    segments += MakeJpegSegment(kJpegApp2, payload.append(icc.substr(i * kPartSize, kPartSize)));
  }
  return segments;
}

std::string ProfileChunk(std::string_view icc) {
  uLongf size = compressBound(static_cast<uLong>(icc.size()));
  std::string compressed(size, '\0');
  if (compress2(reinterpret_cast<Bytef*>(compressed.data()), &size,
                reinterpret_cast<const Bytef*>(icc.data()), static_cast<uLong>(icc.size()),
                Z_BEST_COMPRESSION) != Z_OK) {
    throw std::bad_alloc();
  }
  compressed.resize(size);
  const std::string name_and_method("ICC profile\0\0", 13);
  return MakePngChunk("iCCP", name_and_method + compressed);
}

}  // namespace

std::size_t MaxProfileBytes(lumvik_host_format format) {
  return format == LUMVIK_HOST_FORMAT_JPEG ? kMaxParts * kPartSize : kMaxProfileBytes;
}

std::string AttachProfile(std::string image, lumvik_host_format format, std::string_view icc) {
  switch (format) {
    case LUMVIK_HOST_FORMAT_JPEG:
      return InsertIntoJpeg(std::move(image), ProfileSegments(icc));
    case LUMVIK_HOST_FORMAT_PNG:
      return InsertIntoPng(std::move(image), ProfileChunk(icc));
    case LUMVIK_HOST_FORMAT_TIFF:
      return SetTiffEntry(std::move(image), kTiffProfileTag, TiffByteType::kUndefined, icc);
    default:
      return image;
  }
}

}  // namespace lumvik::host
