#include "integrity/tiff_check.h"

#include <algorithm>
#include <cstdint>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "integrity/image_check.h"

namespace lumvik::host {
namespace {

constexpr std::uint16_t kPanasonicVersion = 0x55;
constexpr std::uint16_t kPanasonicRawOffset = 0x0118;

// Entries with the offsets and the sizes of data.
struct DataTags {
  std::uint16_t offsets;
  std::uint16_t sizes;
};
constexpr DataTags kDataTags[] = {
    {0x0111, 0x0117},  // strips
    {0x0144, 0x0145},  // tiles
    {0x0201, 0x0202},  // an embedded JPEG
};

std::uint64_t EndOfValues(const TiffEntry& entry) {
  return EndOf(entry.offset, entry.size);
}

// Where the data ends, and the lists of its offsets and sizes.
std::uint64_t EndOfData(const TiffReader& reader, const TiffIfd& directory, const DataTags& tags) {
  const TiffEntry* const offsets = directory.Find(tags.offsets);
  const TiffEntry* const sizes = directory.Find(tags.sizes);
  if (offsets == nullptr) return 0;
  std::uint64_t end = EndOfValues(*offsets);
  std::vector<std::uint64_t> lengths;
  if (sizes != nullptr) {
    end = std::max(end, EndOfValues(*sizes));
    lengths = reader.Numbers(*sizes);
  }
  const std::vector<std::uint64_t> starts = reader.Numbers(*offsets);
  lengths.resize(starts.size(), 1);  // of unknown size, but not empty
  for (std::size_t i = 0; i < starts.size(); ++i) {
    if (lengths[i] > 0) end = std::max(end, EndOf(starts[i], lengths[i]));
  }
  return end;
}

std::uint64_t EndOfImages(const TiffReader& reader, const TiffIfd& directory) {
  // Panasonic's strips are meaningless: the data starts at a separate offset and fills the file.
  if (reader.Version() == kPanasonicVersion) {
    const TiffEntry* const data = directory.Find(kPanasonicRawOffset);
    const auto starts = data == nullptr ? std::vector<std::uint64_t>() : reader.Numbers(*data);
    return starts.empty() ? 0 : EndOf(starts[0], 1);
  }
  std::uint64_t end = 0;
  for (const DataTags& tags : kDataTags) end = std::max(end, EndOfData(reader, directory, tags));
  return end;
}

bool IsDeep(const TiffReader& reader) {
  constexpr std::uint16_t kBitsPerSample = 0x0102;
  constexpr std::uint64_t kDeepBits = 16;
  const TiffEntry* const bits =
      reader.Directories().empty() ? nullptr : reader.Directories().front().Find(kBitsPerSample);
  if (bits == nullptr) return false;
  const std::vector<std::uint64_t> numbers = reader.Numbers(*bits);
  return !numbers.empty() && numbers[0] == kDeepBits;
}

}  // namespace

std::optional<Damage> CheckTiffImages(std::string_view tiff, const TiffReader& reader) {
  if (!reader.IsTiff()) return Damage{"the header is incomplete"};
  std::uint64_t end = reader.DirectoriesEnd();
  for (const TiffIfd& directory : reader.Directories()) end = std::max(end, EndOfImages(reader, directory));
  return MissingEnd(tiff.size(), end);
}

std::optional<Damage> CheckTiff(std::string_view tiff) {
  const TiffReader reader(tiff);
  if (auto damage = CheckTiffImages(tiff, reader)) return damage;
  std::uint64_t end = 0;
  for (const TiffIfd& directory : reader.Directories()) {
    for (const TiffEntry& entry : directory.entries) end = std::max(end, EndOfValues(entry));
  }
  if (auto missing = MissingEnd(tiff.size(), end)) return missing;
  // With 8 bits OpenCV has libtiff ignore errors.
  return CheckDecodable(tiff, IsDeep(reader) ? cv::IMREAD_COLOR | cv::IMREAD_ANYDEPTH : cv::IMREAD_COLOR);
}

}  // namespace lumvik::host
