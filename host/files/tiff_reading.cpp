#include "files/tiff_reading.h"

#include <algorithm>
#include <deque>
#include <iterator>
#include <set>

namespace lumvik::host {
namespace {

constexpr std::uint16_t kBigTiffVersion = 43;
constexpr std::uint16_t kDirectoryTags[] = {0x014A, 0x8769, 0x8825, 0xA005};  // SubIFDs, EXIF, GPS, interop

// A file may refer to one directory many times, or to garbage.
constexpr std::size_t kMaxDirectories = 1000;
constexpr std::size_t kMaxEntries = 200000;

// Bytes of one value, by type; see TIFF 6.0, page 15, and the types 13 and 16 to 18 added later.
unsigned SizeOfType(std::uint16_t type) {
  constexpr unsigned kSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4, 0, 0, 8, 8, 8};
  return type < std::size(kSizes) ? kSizes[type] : 0;
}

}  // namespace

const TiffEntry* TiffIfd::Find(std::uint16_t tag) const {
  const auto entry = std::find_if(entries.begin(), entries.end(),
                                  [tag](const TiffEntry& candidate) { return candidate.tag == tag; });
  return entry == entries.end() ? nullptr : &*entry;
}

TiffReader::TiffReader(std::string_view bytes) : bytes_(bytes) {
  const std::string_view mark = bytes.substr(0, 2);
  if (mark != "II" && mark != "MM") return;
  order_ = mark == "MM" ? ByteOrder::kBig : ByteOrder::kLittle;
  version_ = static_cast<std::uint16_t>(Number(2, 2).value_or(0));
  is_big_ = version_ == kBigTiffVersion;
  first_ = is_big_ ? Number(8, 8) : Number(4, 4);
  if (!first_) return;
  end_ = is_big_ ? 16 : 8;

  std::deque<std::uint64_t> waiting = {*first_};
  std::set<std::uint64_t> seen = {0};  // 0 ends a chain
  while (!waiting.empty() && directories_.size() < kMaxDirectories && entry_count_ < kMaxEntries) {
    const std::uint64_t offset = waiting.front();
    waiting.pop_front();
    if (!seen.insert(offset).second) continue;
    for (const std::uint64_t next : ReadDirectory(offset)) {
      if (waiting.size() < kMaxDirectories) waiting.push_back(next);
    }
  }
}

std::vector<std::uint64_t> TiffReader::ReadDirectory(std::uint64_t offset) {
  const unsigned count_size = is_big_ ? 8 : 2;
  const unsigned entry_size = is_big_ ? 20 : 12;
  const unsigned link_size = is_big_ ? 8 : 4;
  const std::uint64_t first_entry = EndOf(offset, count_size);
  const std::uint64_t count = Number(offset, count_size).value_or(0);
  const std::uint64_t link = EndOf(first_entry, SizeOf(count, entry_size));
  end_ = std::max(end_, EndOf(link, link_size));

  TiffIfd directory;
  std::vector<std::uint64_t> next;
  for (std::uint64_t i = 0; i < count && entry_count_ < kMaxEntries; ++i, ++entry_count_) {
    const auto entry = ReadEntry(first_entry + i * entry_size);
    if (!entry) break;
    directory.entries.push_back(*entry);
    if (std::count(std::begin(kDirectoryTags), std::end(kDirectoryTags), entry->tag) == 0) continue;
    const std::vector<std::uint64_t> offsets = Numbers(*entry);
    next.insert(next.end(), offsets.begin(), offsets.end());
  }
  directories_.push_back(std::move(directory));
  if (const auto linked = Number(link, link_size)) next.push_back(*linked);
  return next;
}

std::optional<TiffEntry> TiffReader::ReadEntry(std::uint64_t offset) const {
  const unsigned field_size = is_big_ ? 8 : 4;  // of the count, and of the values or their offset
  const std::uint64_t value_field = offset + 4 + field_size;
  const auto tag = Number(offset, 2);
  const auto type = Number(offset + 2, 2);
  const auto count = Number(offset + 4, field_size);
  const auto value_offset = Number(value_field, field_size);
  if (!tag || !type || !count || !value_offset) return std::nullopt;
  TiffEntry entry;
  entry.position = offset;
  entry.tag = static_cast<std::uint16_t>(*tag);
  entry.type = static_cast<std::uint16_t>(*type);
  entry.count = *count;
  entry.size = SizeOf(*count, SizeOfType(entry.type));
  entry.offset = entry.size <= field_size ? value_field : *value_offset;
  return entry;
}

std::vector<std::uint64_t> TiffReader::Numbers(const TiffEntry& entry) const {
  std::vector<std::uint64_t> numbers;
  const unsigned size = SizeOfType(entry.type);
  if (size == 0) return numbers;
  const std::uint64_t count = std::min({entry.count, kMaxNumbers, Bytes(entry).size() / std::uint64_t{size}});
  for (std::uint64_t i = 0; i < count; ++i) numbers.push_back(*Number(entry.offset + i * size, size));
  return numbers;
}

}  // namespace lumvik::host
