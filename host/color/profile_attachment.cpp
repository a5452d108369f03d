#include "color/profile_attachment.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <vector>

#include "base/failure.h"
#include "color/embedded_profile.h"
#include "files/byte_reading.h"
#include "files/jpeg_segments.h"
#include "files/png_chunks.h"
#include "files/tiff_reading.h"

namespace lumvik::host {
namespace {

Failure Unattachable(const char* format) {
  return {LUMVIK_HOST_INTERNAL, std::string("cannot attach a color profile to this ") + format};
}

void AppendBytes(std::string& bytes, std::uint64_t number, unsigned width, ByteOrder order) {
  for (unsigned i = 0; i < width; ++i) {
    const unsigned shift = 8 * (order == ByteOrder::kBig ? width - 1 - i : i);
    bytes.push_back(static_cast<char>(number >> shift & 0xFFU));
  }
}

// After the headers of JFIF and EXIF, which readers expect first.
std::string AttachToJpeg(const std::string& jpeg, std::string_view icc) {
  const std::vector<JpegSegment> headers = JpegSegments(jpeg);
  if (headers.empty()) throw Unattachable("JPEG");
  std::uint64_t position = 2;
  for (const JpegSegment& segment : headers) {
    if (segment.marker != kJpegApp0 && segment.marker != kJpegApp1) break;
    position = segment.end;
  }
  const std::size_t part_size = kMaxJpegPayload - kJpegProfileMark.size() - 2;
  const std::size_t count = (icc.size() + part_size - 1) / part_size;
  std::string segments;
  for (std::size_t i = 0; i < count; ++i) {
    const std::string_view part = icc.substr(i * part_size, part_size);
    AppendBytes(segments, 0xFF00U | kJpegApp2, 2, ByteOrder::kBig);
    AppendBytes(segments, 2 + kJpegProfileMark.size() + 2 + part.size(), 2, ByteOrder::kBig);
    segments += kJpegProfileMark;
    AppendBytes(segments, i + 1, 1, ByteOrder::kBig);
    AppendBytes(segments, count, 1, ByteOrder::kBig);
    segments += part;
  }
  return std::string(jpeg).insert(static_cast<std::size_t>(position), segments);
}

std::string AttachToPng(const std::string& png, std::string_view icc) {
  const std::vector<PngChunk> chunks = PngChunks(png);
  if (chunks.empty() || !chunks.front().is_sound) throw Unattachable("PNG");
  uLongf size = compressBound(static_cast<uLong>(icc.size()));
  std::string compressed(size, '\0');
  if (compress2(reinterpret_cast<Bytef*>(compressed.data()), &size,
                reinterpret_cast<const Bytef*>(icc.data()), static_cast<uLong>(icc.size()),
                Z_BEST_COMPRESSION) != Z_OK) {
    throw std::bad_alloc();
  }
  compressed.resize(size);
  const std::string name_and_method("ICC profile\0\0", 13);
  const auto after_header = static_cast<std::size_t>(chunks.front().end);
  return std::string(png).insert(after_header, MakePngChunk("iCCP", name_and_method + compressed));
}

// Appends the profile and a copy of the first directory that refers to it.
std::string AttachToTiff(const std::string& tiff, std::string_view icc) {
  constexpr ByteOrder kOrder = ByteOrder::kLittle;
  constexpr std::uint16_t kTiffVersion = 42;
  constexpr std::uint16_t kUndefined = 7;  // a type
  constexpr std::uint64_t kLinkOffset = 4;
  constexpr std::uint64_t kEntrySize = 12;
  const TiffReader reader(tiff);
  const auto directory = NumberAt(tiff, kLinkOffset, 4, kOrder);
  if (!reader.IsTiff() || reader.Order() != kOrder || reader.Version() != kTiffVersion || !directory) {
    throw Unattachable("TIFF");
  }
  const auto count = NumberAt(tiff, *directory, 2, kOrder).value_or(0);
  std::vector<std::string> entries;
  for (std::uint64_t i = 0; i < count; ++i) {
    entries.emplace_back(PartOf(tiff, *directory + 2 + i * kEntrySize, kEntrySize));
  }
  std::string attached = tiff;
  if (attached.size() % 2 != 0) attached.push_back('\0');  // offsets are even
  std::string entry;
  AppendBytes(entry, kTiffProfileTag, 2, kOrder);
  AppendBytes(entry, kUndefined, 2, kOrder);
  AppendBytes(entry, icc.size(), 4, kOrder);
  AppendBytes(entry, attached.size(), 4, kOrder);
  entries.push_back(entry);
  std::stable_sort(entries.begin(), entries.end(), [](const std::string& a, const std::string& b) {
    return NumberAt(a, 0, 2, kOrder) < NumberAt(b, 0, 2, kOrder);  // as TIFF requires
  });
  attached += icc;
  if (attached.size() % 2 != 0) attached.push_back('\0');
  const std::uint64_t new_directory = attached.size();
  AppendBytes(attached, entries.size(), 2, kOrder);
  for (const std::string& old_or_new : entries) attached += old_or_new;
  attached += PartOf(tiff, *directory + 2 + count * kEntrySize, 4);  // the link to the next directory
  if (attached.size() > UINT32_MAX) throw Unattachable("TIFF");
  std::string link;
  AppendBytes(link, new_directory, 4, kOrder);
  return attached.replace(kLinkOffset, link.size(), link);
}

}  // namespace

std::string AttachProfile(const std::string& image, lumvik_host_format format, std::string_view icc) {
  switch (format) {
    case LUMVIK_HOST_FORMAT_JPEG:
      return AttachToJpeg(image, icc);
    case LUMVIK_HOST_FORMAT_PNG:
      return AttachToPng(image, icc);
    case LUMVIK_HOST_FORMAT_TIFF:
      return AttachToTiff(image, icc);
    default:
      return image;
  }
}

}  // namespace lumvik::host
