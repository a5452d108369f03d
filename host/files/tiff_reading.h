// The directories of TIFF files and of RAW files built like them, truncated or not.
#ifndef LUMVIK_HOST_FILES_TIFF_READING_H_
#define LUMVIK_HOST_FILES_TIFF_READING_H_

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "files/byte_reading.h"

namespace lumvik::host {

struct TiffEntry {
  std::uint16_t tag = 0;
  std::uint16_t type = 0;
  std::uint64_t count = 0;
  std::uint64_t position = 0;  // of the entry itself
  std::uint64_t offset = 0;    // of the values
  std::uint64_t size = 0;      // of the values in bytes; 0 for an unknown type
};

struct TiffIfd {
  std::vector<TiffEntry> entries;  // those within the file

  // Null if there is none.
  const TiffEntry* Find(std::uint16_t tag) const;
};

class TiffReader {
 public:
  // Reads all directories that can be reached: the chain, and those for EXIF, GPS, interoperability and
  // further images.
  explicit TiffReader(std::string_view bytes);

  // False if the bytes do not start with a TIFF header, of any version.
  bool IsTiff() const { return first_.has_value(); }
  // The number after the byte order: 42, 43 for BigTIFF, others for RAW formats.
  std::uint16_t Version() const { return version_; }
  ByteOrder Order() const { return order_; }

  // In the order of reading, from the first directory on.
  const std::vector<TiffIfd>& Directories() const { return directories_; }
  // Where the last directory ends, which may be beyond the end of the file.
  std::uint64_t DirectoriesEnd() const { return end_; }

  // The values of an entry of an integer type, as far as they are within the file; at most kMaxNumbers.
  std::vector<std::uint64_t> Numbers(const TiffEntry& entry) const;
  // The bytes of the values, as far as they are within the file.
  std::string_view Bytes(const TiffEntry& entry) const { return PartOf(bytes_, entry.offset, entry.size); }

  static constexpr std::uint64_t kMaxNumbers = 1 << 20;  // strips of an image

 private:
  // Returns the offsets of the directories that it refers to.
  std::vector<std::uint64_t> ReadDirectory(std::uint64_t offset);
  std::optional<TiffEntry> ReadEntry(std::uint64_t offset) const;
  std::optional<std::uint64_t> Number(std::uint64_t offset, unsigned width) const {
    return NumberAt(bytes_, offset, width, order_);
  }

  std::string_view bytes_;
  ByteOrder order_ = ByteOrder::kLittle;
  std::uint16_t version_ = 0;
  bool is_big_ = false;                 // BigTIFF
  std::optional<std::uint64_t> first_;  // the offset of the first directory
  std::vector<TiffIfd> directories_;
  std::size_t entry_count_ = 0;
  std::uint64_t end_ = 0;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_TIFF_READING_H_
