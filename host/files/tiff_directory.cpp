#include "files/tiff_directory.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "files/byte_reading.h"
#include "files/file_reading.h"

namespace lumvik::host {
namespace {

constexpr std::uint64_t kMaxTiffEntries = 65535;

// Of TIFF 6.0 and of BigTIFF.
struct TiffLayout {
  std::size_t header_size;
  std::size_t link_at;  // the offset of the first directory
  unsigned link_size;   // of offsets
  unsigned count_size;  // of the number of entries
  std::size_t entry_size;
};
constexpr TiffLayout kClassicTiff = {8, 4, 4, 2, 12};
constexpr TiffLayout kBigTiff = {16, 8, 8, 8, 20};

}  // namespace

std::string ReadFirstTiffDirectory(const std::string& path) {
  constexpr std::uint64_t kBigVersion = 43;
  std::string header = ReadPart(path, 0, kBigTiff.header_size);
  const bool is_little = header.substr(0, 2) == "II";
  const ByteOrder order = is_little ? ByteOrder::kLittle : ByteOrder::kBig;
  const TiffLayout& layout = NumberAt(header, 2, 2, order) == kBigVersion ? kBigTiff : kClassicTiff;
  const auto offset = NumberAt(header, layout.link_at, layout.link_size, order);
  if (!offset) return header;
  const std::string count = ReadPart(path, *offset, layout.count_size);
  const auto entries = std::min(NumberAt(count, 0, layout.count_size, order).value_or(0), kMaxTiffEntries);

  std::string link(layout.link_size, '\0');
  link[is_little ? 0 : link.size() - 1] = static_cast<char>(layout.header_size);
  header.resize(layout.header_size);
  header.replace(layout.link_at, link.size(), link);
  return header + count +
         ReadPart(path, EndOf(*offset, layout.count_size),
                  static_cast<std::size_t>(entries) * layout.entry_size);
}

}  // namespace lumvik::host
