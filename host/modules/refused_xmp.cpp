#include "modules/refused_xmp.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <optional>
#include <utility>

#include "files/byte_reading.h"
#include "files/jpeg_segments.h"
#include "files/png_chunks.h"
#include "files/tiff_reading.h"
#include "modules/xmp_fence.h"

namespace lumvik::metadata {
namespace {

using host::ByteOrder;

constexpr std::string_view kJpegXmp = {"http://ns.adobe.com/xap/1.0/\0", 29};
constexpr std::string_view kPngXmp = {"XML:com.adobe.xmp\0", 18};
constexpr std::string_view kPngRawXmp = {"Raw profile type xmp\0", 21};
constexpr std::string_view kPngRawExif = {"Raw profile type exif\0", 22};
constexpr std::string_view kPngRawApp1 = {"Raw profile type APP1\0", 22};
constexpr std::uint16_t kTiffXmp = 700;

constexpr char kUndecodable[] = "it is damaged or larger than 16 MB";
static_assert(kMaxXmpBytes == std::size_t{16} << 20U);

bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

class RefusedXmpFinder {
 public:
  explicit RefusedXmpFinder(std::string_view file) : file_(file) {}

  std::vector<RefusedXmp> Find() {
    if (StartsWith(file_, host::kPngSignature)) {
      SearchPng();
    } else if (StartsWith(file_, "RIFF")) {
      SearchWebp();
    } else if (StartsWith(file_, "\xFF\xD8")) {
      SearchJpeg();
    } else if (StartsWith(file_, "II") || StartsWith(file_, "MM")) {
      SearchTiff(file_);
    } else {
      SearchAnywhere();
    }
    return std::move(refused_);
  }

 private:
  std::size_t OffsetOf(std::string_view part) const {
    return static_cast<std::size_t>(part.data() - file_.data());
  }

  // `name` is in the file and identifies the packet.
  void Refuse(std::string_view name, const std::string& why) {
    if (!why.empty()) refused_.push_back({OffsetOf(name), why});
  }

  // Entries and boxes may overlap, so that a small file could hold any number of huge packets.
  void Check(std::string_view name, std::string_view packet) {
    constexpr int kMaxPackets = 4;
    const bool is_one_too_many = ++packets_ > kMaxPackets;
    Refuse(name, is_one_too_many ? "there are more than 4 packets" : XmpFault(packet));
  }

  void SearchJpeg() {
    for (const host::JpegSegment& segment : host::JpegSegments(file_)) {
      if (segment.marker != host::kJpegApp1 || !StartsWith(segment.payload, kJpegXmp)) continue;
      Check(segment.payload, segment.payload.substr(kJpegXmp.size()));
    }
  }

  void SearchPng() {
    for (const host::PngChunk& chunk : host::PngChunks(file_)) {
      const bool is_text = chunk.type == "iTXt" || chunk.type == "zTXt" || chunk.type == "tEXt";
      if (is_text && StartsWith(chunk.data, kPngXmp)) {
        CheckPacketOf(chunk, PngText(chunk, kPngXmp.size()));
      } else if (is_text && StartsWith(chunk.data, kPngRawXmp)) {
        CheckPacketOf(chunk, FromRawProfile(PngText(chunk, kPngRawXmp.size())));
      } else if (StartsWith(chunk.data, kPngRawExif) || StartsWith(chunk.data, kPngRawApp1)) {
        SearchPngExif(chunk);
      }
    }
  }

  // The text of a chunk after its keyword, decompressed; nothing if that fails or is too much in all.
  std::string PngText(const host::PngChunk& chunk, std::size_t keyword) {
    std::string_view text = chunk.data.substr(keyword);
    bool is_compressed = chunk.type == "zTXt";
    std::size_t header = is_compressed ? 1 : 0;  // the method
    if (chunk.type == "iTXt") {
      is_compressed = !text.empty() && text.front() != '\0';
      // A flag, a method and two texts.
      const std::size_t language_end = text.find('\0', 2);
      const std::size_t translated_end =
          language_end == std::string_view::npos ? language_end : text.find('\0', language_end + 1);
      header = translated_end == std::string_view::npos ? text.size() : translated_end + 1;
    }
    text.remove_prefix(std::min(header, text.size()));
    if (!is_compressed) return std::string(text);
    // A small file could hold any number of huge texts.
    if (inflated_ > kMaxXmpBytes) return {};
    std::string inflated = host::InflatePng(text, kMaxXmpBytes);
    inflated_ += inflated.empty() ? kMaxXmpBytes : inflated.size();
    return inflated;
  }

  void CheckPacketOf(const host::PngChunk& chunk, const std::string& packet) {
    if (packet.empty()) return Refuse(chunk.type, kUndecodable);
    Check(chunk.type, packet);
  }

  // Three lines, the last with the length, and hexadecimal digits.
  static std::string FromRawProfile(std::string_view text) {
    for (int line = 0; line < 3; ++line) {
      text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
      if (text.empty()) return {};
    }
    std::string bytes;
    unsigned byte = 1;  // becomes 0x1XY
    for (const char c : text) {
      const auto digit = static_cast<unsigned char>(c);
      if (std::isxdigit(digit) == 0) continue;
      constexpr unsigned kTen = 10;
      const auto value =
          std::isdigit(digit) != 0 ? digit - unsigned{'0'} : (digit | 0x20U) - unsigned{'a'} + kTen;
      byte = byte << 4U | value;
      if (byte < 0x100U) continue;
      bytes.push_back(static_cast<char>(byte & 0xFFU));
      byte = 1;
    }
    return bytes;
  }

  // EXIF is a TIFF, and may thus hold XMP. That of a camera has at most 64 KiB, since it was in a JPEG.
  void SearchPngExif(const host::PngChunk& chunk) {
    constexpr std::size_t kMaxExifInPng = std::size_t{1} << 20U;
    if (FromRawProfile(PngText(chunk, kPngRawExif.size())).size() > kMaxExifInPng) {
      Refuse(chunk.type, "the EXIF around it is larger than 1 MB");
    }
  }

  void SearchWebp() {
    constexpr std::uint64_t kFirstChunk = 12;
    constexpr std::uint64_t kHeader = 8;
    for (std::uint64_t at = kFirstChunk; at < file_.size();) {
      const auto size = host::NumberAt(file_, at + 4, 4, ByteOrder::kLittle);
      if (!size) return;
      const std::string_view name = host::PartOf(file_, at, 4);
      const std::string_view data = host::PartOf(file_, at + kHeader, *size);
      if (name == "XMP ") Check(name, data);
      if (name == "EXIF") {
        constexpr std::string_view kExif = {"Exif\0\0", 6};
        SearchTiff(StartsWith(data, kExif) ? data.substr(kExif.size()) : data);
      }
      at += kHeader + *size + *size % 2;
    }
  }

  // In the first directory.
  void SearchTiff(std::string_view tiff) {
    const host::TiffReader reader(tiff);
    if (reader.Directories().empty()) return;
    for (const host::TiffEntry& entry : reader.Directories().front().entries) {
      if (entry.tag != kTiffXmp) continue;
      // Exiv2 takes the values of an unknown type for bytes.
      const std::uint64_t size = entry.size != 0 ? entry.size : entry.count;
      // The low byte of the tag.
      const std::size_t tag_at =
          static_cast<std::size_t>(entry.position) + (reader.Order() == ByteOrder::kBig ? 1 : 0);
      Check(tiff.substr(tag_at), host::PartOf(tiff, entry.offset, size));
    }
  }

  // Other RAW formats contain TIFFs, or ISO boxes, of which one with this identifier holds XMP.
  void SearchAnywhere() {
    constexpr std::string_view kTiffStarts[] = {{"II*\0", 4}, {"MM\0*", 4}};
    constexpr std::string_view kXmpBox = "\xBE\x7A\xCF\xCB\x97\xA9\x42\xE8\x9C\x71\x99\x94\x91\xE3\xAF\xAC";
    constexpr int kMaxTiffs = 64;  // far more than there are, in what is not pixels
    for (const std::string_view start : kTiffStarts) {
      std::size_t at = file_.find(start);
      for (int i = 0; i < kMaxTiffs && at != std::string_view::npos; ++i, at = file_.find(start, at + 1)) {
        SearchTiff(file_.substr(at));
      }
    }
    for (std::size_t at = file_.find(kXmpBox); at != std::string_view::npos;
         at = file_.find(kXmpBox, at + 1)) {
      constexpr std::size_t kBoxHeader = 8;  // size and type
      const auto size =
          at < kBoxHeader ? std::nullopt : host::NumberAt(file_, at - kBoxHeader, 4, ByteOrder::kBig);
      const std::size_t packet = at + kXmpBox.size();
      const std::uint64_t length = std::max<std::uint64_t>(size.value_or(0), kBoxHeader + kXmpBox.size());
      Check(file_.substr(at), host::PartOf(file_, packet, length - kBoxHeader - kXmpBox.size()));
    }
  }

  std::string_view file_;
  std::size_t inflated_ = 0;  // bytes
  int packets_ = 0;
  std::vector<RefusedXmp> refused_;
};

}  // namespace

std::vector<RefusedXmp> FindRefusedXmp(std::string_view file) {
  return RefusedXmpFinder(file).Find();
}

}  // namespace lumvik::metadata
