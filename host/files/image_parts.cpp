#include "files/image_parts.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "files/byte_reading.h"
#include "files/jpeg_segments.h"
#include "files/png_chunks.h"
#include "files/tiff_reading.h"

namespace lumvik::host {
namespace {

constexpr ByteOrder kTiffOrder = ByteOrder::kLittle;
constexpr std::uint64_t kTiffLinkOffset = 4;
constexpr std::uint64_t kTiffEntrySize = 12;

Failure Unextendable(const char* format) {
  return {LUMVIK_HOST_DAMAGED, std::string("nothing can be added to this ") + format + ": it is damaged"};
}

void AppendBytes(std::string& bytes, std::uint64_t number, unsigned width, ByteOrder order) {
  for (unsigned i = 0; i < width; ++i) {
    const unsigned shift = 8 * (order == ByteOrder::kBig ? width - 1 - i : i);
    bytes.push_back(static_cast<char>(number >> shift & 0xFFU));
  }
}

void PadToEven(std::string& tiff) {
  if (tiff.size() % 2 != 0) tiff.push_back('\0');  // offsets are even
}

// The entries of a directory but the one with `tag`.
std::vector<std::string> OtherTiffEntries(std::string_view tiff, std::uint64_t directory, std::uint64_t count,
                                          std::uint16_t tag) {
  std::vector<std::string> entries;
  for (std::uint64_t i = 0; i < count; ++i) {
    const std::string_view entry = PartOf(tiff, directory + 2 + i * kTiffEntrySize, kTiffEntrySize);
    if (NumberAt(entry, 0, 2, kTiffOrder) != tag) entries.emplace_back(entry);
  }
  return entries;
}

}  // namespace

std::string MakeJpegSegment(std::uint8_t marker, std::string_view payload) {
  std::string segment;
  AppendBytes(segment, 0xFF00U | marker, 2, ByteOrder::kBig);
  AppendBytes(segment, 2 + payload.size(), 2, ByteOrder::kBig);
  return segment.append(payload);
}

std::string InsertIntoJpeg(std::string jpeg, std::string_view segments) {
  const std::vector<JpegSegment> headers = JpegSegments(jpeg);
  if (headers.empty()) throw Unextendable("JPEG");
  std::uint64_t position = 2;
  for (const JpegSegment& segment : headers) {
    if (segment.marker != kJpegApp0 && segment.marker != kJpegApp1) break;
    position = segment.end;
  }
  jpeg.insert(static_cast<std::size_t>(position), segments);
  return jpeg;
}

std::string InsertIntoPng(std::string png, std::string_view chunk) {
  const std::vector<PngChunk> header = PngHeaderChunks(png);
  if (header.empty() || !header.front().is_sound) throw Unextendable("PNG");
  png.insert(static_cast<std::size_t>(header.front().end), chunk);
  return png;
}

std::string SetTiffEntry(std::string tiff, std::uint16_t tag, TiffByteType type, std::string_view values) {
  constexpr std::uint16_t kTiffVersion = 42;
  const TiffReader reader(tiff);
  const auto directory = NumberAt(tiff, kTiffLinkOffset, 4, kTiffOrder);
  if (!reader.IsTiff() || reader.Order() != kTiffOrder || reader.Version() != kTiffVersion || !directory) {
    throw Unextendable("TIFF");
  }
  const auto count = NumberAt(tiff, *directory, 2, kTiffOrder).value_or(0);
  std::vector<std::string> entries = OtherTiffEntries(tiff, *directory, count, tag);
  const std::string next(PartOf(tiff, *directory + 2 + count * kTiffEntrySize, 4));  // the link to it
  tiff.reserve(tiff.size() + values.size() + 2 + (count + 1) * kTiffEntrySize + next.size() + 2);

  PadToEven(tiff);
  std::string entry;
  AppendBytes(entry, tag, 2, kTiffOrder);
  AppendBytes(entry, static_cast<std::uint64_t>(type), 2, kTiffOrder);
  AppendBytes(entry, values.size(), 4, kTiffOrder);
  AppendBytes(entry, tiff.size(), 4, kTiffOrder);
  entries.push_back(entry);
  std::stable_sort(entries.begin(), entries.end(), [](const std::string& a, const std::string& b) {
    return NumberAt(a, 0, 2, kTiffOrder) < NumberAt(b, 0, 2, kTiffOrder);  // as TIFF requires
  });
  tiff += values;
  PadToEven(tiff);
  const std::uint64_t new_directory = tiff.size();
  AppendBytes(tiff, entries.size(), 2, kTiffOrder);
  for (const std::string& old_or_new : entries) tiff += old_or_new;
  tiff += next;
  if (tiff.size() > UINT32_MAX) throw Unextendable("TIFF");
  std::string link;
  AppendBytes(link, new_directory, 4, kTiffOrder);
  tiff.replace(kTiffLinkOffset, link.size(), link);
  return tiff;
}

}  // namespace lumvik::host
