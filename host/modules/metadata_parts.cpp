#include "modules/metadata_parts.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string_view>

#include "files/jpeg_segments.h"
#include "files/png_chunks.h"

namespace lumvik::metadata {
namespace {

using host::JpegSegment;
using host::PngChunk;

constexpr std::string_view kJpegStart = "\xFF\xD8";

std::string ContentOf(const std::string& path) {
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

bool BeginsWith(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

// "" for a segment without metadata.
std::string KindOf(const JpegSegment& segment) {
  constexpr std::uint8_t kApp13 = 0xED;
  if (segment.marker == kApp13) return "IPTC";
  if (segment.marker != host::kJpegApp1) return {};
  return BeginsWith(segment.payload, "Exif") ? "EXIF" : "XMP";
}

std::string KindOf(const PngChunk& chunk) {
  if (chunk.type == "eXIf" || BeginsWith(chunk.data, "Raw profile type exif") ||
      BeginsWith(chunk.data, "Raw profile type APP1")) {
    return "EXIF";
  }
  if (BeginsWith(chunk.data, "Raw profile type iptc")) return "IPTC";
  return BeginsWith(chunk.data, "XML:com.adobe.xmp") ? "XMP" : "";
}

// Several segments may share a block.
std::vector<MetadataPart> PartsOfJpeg(std::string_view jpeg) {
  constexpr std::string_view kEnd = "\xFF\xD9";
  constexpr std::size_t kHeader = 4;
  std::map<std::string, std::string> segments;
  for (const JpegSegment& segment : host::JpegSegments(jpeg)) {
    const std::size_t size = kHeader + segment.payload.size();
    segments[KindOf(segment)] += jpeg.substr(static_cast<std::size_t>(segment.end) - size, size);
  }
  std::vector<MetadataPart> parts;
  for (const auto& [kind, bytes] : segments) {
    if (!kind.empty()) parts.push_back({kind, std::string(kJpegStart) + bytes + std::string(kEnd)});
  }
  return parts;
}

std::vector<MetadataPart> PartsOfPng(std::string_view png) {
  std::vector<MetadataPart> parts;
  std::string header(host::kPngSignature);
  for (const PngChunk& chunk : host::PngChunks(png)) {
    if (chunk.type == "IHDR") header += host::MakePngChunk(chunk.type, chunk.data);
    const std::string kind = KindOf(chunk);
    if (kind.empty()) continue;
    parts.push_back(
        {kind, header + host::MakePngChunk(chunk.type, chunk.data) + host::MakePngChunk("IEND", "")});
  }
  return parts;
}

}  // namespace

std::optional<std::vector<MetadataPart>> PartsOfMetadata(const std::string& path) {
  const std::string content = ContentOf(path);
  if (BeginsWith(content, host::kPngSignature)) return PartsOfPng(content);
  if (BeginsWith(content, kJpegStart)) return PartsOfJpeg(content);
  return std::nullopt;
}

bool StatesIptc(const MetadataPart& part) {
  constexpr std::string_view kResource = {"8BIM\x04\x04\0\0", 8};  // without a name
  constexpr std::string_view kEmpty = {"\0\0\0\0", 4};
  const std::size_t resource = part.image.find(kResource);
  return part.kind == "IPTC" && resource != std::string::npos &&
         part.image.substr(resource + kResource.size(), kEmpty.size()) != kEmpty;
}

}  // namespace lumvik::metadata
