#include "files/xmp_part.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "files/byte_reading.h"
#include "files/image_parts.h"
#include "files/jpeg_segments.h"
#include "files/png_chunks.h"
#include "files/tiff_reading.h"

namespace lumvik::host {
namespace {

constexpr std::string_view kJpegXmpMark = {"http://ns.adobe.com/xap/1.0/\0", 29};
constexpr std::string_view kPngXmpKeyword = {"XML:com.adobe.xmp\0", 18};
constexpr std::uint16_t kTiffXmpTag = 700;

bool IsXmp(const JpegSegment& segment) {
  return segment.marker == kJpegApp1 && PartOf(segment.payload, 0, kJpegXmpMark.size()) == kJpegXmpMark;
}

bool IsXmp(const PngChunk& chunk) {
  return chunk.type == "iTXt" && chunk.is_sound &&
         PartOf(chunk.data, 0, kPngXmpKeyword.size()) == kPngXmpKeyword;
}

XmpPart XmpOfJpeg(std::string_view jpeg) {
  for (const JpegSegment& segment : JpegSegments(jpeg)) {
    if (IsXmp(segment)) return {segment.payload.substr(kJpegXmpMark.size()), false, {}};
  }
  return {};
}

// After the keyword come a flag and a method of compression, and two texts that are usually empty.
XmpPart XmpOfPng(std::string_view png) {
  for (const PngChunk& chunk : PngHeaderChunks(png)) {
    if (!IsXmp(chunk)) continue;
    const std::size_t flag = kPngXmpKeyword.size();
    const std::size_t language_end = chunk.data.find('\0', flag + 2);
    if (language_end == std::string_view::npos) return {};
    const std::size_t keyword_end = chunk.data.find('\0', language_end + 1);
    if (keyword_end == std::string_view::npos) return {};
    return {chunk.data.substr(keyword_end + 1),
            chunk.data[flag] != '\0',
            {chunk.type.data(), chunk.type.size() + chunk.data.size()}};
  }
  return {};
}

XmpPart XmpOfTiff(std::string_view tiff) {
  const TiffReader reader(tiff);
  if (reader.Directories().empty()) return {};
  const TiffEntry* const entry = reader.Directories().front().Find(kTiffXmpTag);
  if (entry == nullptr) return {};
  return {reader.Bytes(*entry), false, {}};
}

// Erases the packets among the segments or chunks of a file. The first of these begins at `begin`, each other
// where the previous one ends.
template <typename Part>
void EraseXmp(std::string& file, const std::vector<Part>& parts, std::uint64_t begin) {
  using Range = std::pair<std::uint64_t, std::uint64_t>;
  std::vector<Range> packets;
  for (const Part& part : parts) {
    if (IsXmp(part)) packets.emplace_back(begin, part.end);
    begin = part.end;
  }
  if (packets.empty()) return;
  packets.emplace_back(file.size(), file.size());
  auto kept = file.begin() + static_cast<std::ptrdiff_t>(packets.front().first);
  for (std::size_t i = 1; i < packets.size(); ++i) {
    kept = std::copy(file.begin() + static_cast<std::ptrdiff_t>(packets[i - 1].second),
                     file.begin() + static_cast<std::ptrdiff_t>(packets[i].first), kept);
  }
  file.erase(kept, file.end());
}

std::string ReplaceInJpeg(std::string jpeg, std::string_view packet) {
  constexpr std::uint64_t kFirstSegment = 2;
  const std::string payload = std::string(kJpegXmpMark).append(packet);
  if (payload.size() > kMaxJpegPayload) {
    throw Failure(LUMVIK_HOST_UNSUPPORTED,
                  "cannot write the metadata: the XMP packet is too long for a JPEG");
  }
  EraseXmp(jpeg, JpegSegments(jpeg), kFirstSegment);
  return InsertIntoJpeg(std::move(jpeg), MakeJpegSegment(kJpegApp1, payload));
}

std::string ReplaceInPng(std::string png, std::string_view packet) {
  constexpr std::string_view kPlainAndNoTexts = {"\0\0\0\0", 4};
  const std::string data = std::string(kPngXmpKeyword).append(kPlainAndNoTexts).append(packet);
  EraseXmp(png, PngHeaderChunks(png), kPngSignature.size());
  return InsertIntoPng(std::move(png), MakePngChunk("iTXt", data));
}

}  // namespace

XmpPart FindXmp(std::string_view image, lumvik_host_format format) {
  switch (format) {
    case LUMVIK_HOST_FORMAT_JPEG:
      return XmpOfJpeg(image);
    case LUMVIK_HOST_FORMAT_PNG:
      return XmpOfPng(image);
    case LUMVIK_HOST_FORMAT_TIFF:
      return XmpOfTiff(image);
    default:
      return {};
  }
}

std::string ReplaceXmp(std::string image, lumvik_host_format format, std::string_view packet) {
  switch (format) {
    case LUMVIK_HOST_FORMAT_JPEG:
      return ReplaceInJpeg(std::move(image), packet);
    case LUMVIK_HOST_FORMAT_PNG:
      return ReplaceInPng(std::move(image), packet);
    case LUMVIK_HOST_FORMAT_TIFF:
      return SetTiffEntry(std::move(image), kTiffXmpTag, TiffByteType::kByte, packet);
    default:
      throw Failure(LUMVIK_HOST_UNSUPPORTED, "this format has no place for an XMP packet");
  }
}

}  // namespace lumvik::host
