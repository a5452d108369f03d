#include "develop/complete_image.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <optional>
#include <string_view>

namespace lumvik {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view kJpegEnd = "\xFF\xD9"sv;
constexpr std::string_view kPngEnd = "\0\0\0\0IEND\xAE\x42\x60\x82"sv;

bool EndsWith(std::ifstream& file, std::string_view end) {
  std::string last(end.size(), '\0');
  file.seekg(-static_cast<std::streamoff>(end.size()), std::ios::end);
  return file.read(last.data(), static_cast<std::streamsize>(last.size())) && last == end;
}

// A little-endian TIFF with one image, as written by the engine or rewritten by exiv2 to add metadata.
class Tiff {
 public:
  explicit Tiff(std::ifstream& file) : file_(file) {
    file_.seekg(0, std::ios::end);
    size_ = file_.tellg();
  }

  // Whether everything the directories refer to lies within the file.
  bool IsWhole() {
    const std::streamoff directory = NumberAt(4, 4);
    if (NumberAt(0, 4) != kMagic || !HoldsValues(directory)) return false;
    for (const std::uint32_t tag : kMetadataTags) {
      const auto metadata = Find(directory, tag);
      if (metadata && !HoldsValues(NumberOf(*metadata, 0))) return false;
    }
    return HoldsStrips(directory);
  }

 private:
  static constexpr std::uint32_t kMagic = 0x002A4949;
  static constexpr std::uint32_t kStripOffsets = 273;
  static constexpr std::uint32_t kStripByteCounts = 279;
  static constexpr std::uint32_t kMetadataTags[] = {34665, 34853};  // EXIF and GPS directories
  static constexpr std::streamoff kEntryBytes = 12;

  struct Values {
    int bytes;  // per value
    std::uint32_t count;
    std::streamoff offset;
  };

  static int BytesOf(std::uint32_t type) {
    constexpr int kBytes[] = {1, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    return type < std::size(kBytes) ? kBytes[type] : 1;
  }

  // A number of `bytes` bytes; 0 past the end of the file.
  std::uint32_t NumberAt(std::streamoff offset, int bytes) {
    unsigned char data[4] = {};
    file_.clear();
    file_.seekg(offset);
    file_.read(reinterpret_cast<char*>(data), bytes);
    std::uint32_t number = 0;
    for (int i = 3; i >= 0; --i) number = number << 8U | data[i];
    return number;
  }

  std::streamoff NumberOf(const Values& values, std::uint32_t i) {
    return NumberAt(values.offset + std::streamoff{values.bytes} * i, std::min(values.bytes, 4));
  }

  Values ValuesOf(std::streamoff entry) {
    Values values = {BytesOf(NumberAt(entry + 2, 2)), NumberAt(entry + 4, 4), entry + 8};
    const bool is_inline = std::streamoff{values.bytes} * values.count <= 4;
    if (!is_inline) values.offset = NumberAt(entry + 8, 4);
    return values;
  }

  std::streamoff EndOfEntries(std::streamoff directory) {
    return directory + 2 + kEntryBytes * NumberAt(directory, 2);
  }

  bool HoldsValues(std::streamoff directory) {
    const std::streamoff end = EndOfEntries(directory);
    if (directory == 0 || end > size_) return false;
    for (std::streamoff entry = directory + 2; entry < end; entry += kEntryBytes) {
      const Values values = ValuesOf(entry);
      if (values.offset + std::streamoff{values.bytes} * values.count > size_) return false;
    }
    return true;
  }

  std::optional<Values> Find(std::streamoff directory, std::uint32_t tag) {
    const std::streamoff end = EndOfEntries(directory);
    for (std::streamoff entry = directory + 2; entry < end; entry += kEntryBytes) {
      if (NumberAt(entry, 2) == tag) return ValuesOf(entry);
    }
    return std::nullopt;
  }

  bool HoldsStrips(std::streamoff directory) {
    const auto offsets = Find(directory, kStripOffsets);
    const auto sizes = Find(directory, kStripByteCounts);
    if (!offsets || !sizes || offsets->count != sizes->count) return false;
    for (std::uint32_t i = 0; i < offsets->count; ++i) {
      if (NumberOf(*offsets, i) + NumberOf(*sizes, i) > size_) return false;
    }
    return true;
  }

  std::ifstream& file_;
  std::streamoff size_ = 0;
};

}  // namespace

bool IsCompleteImage(const std::string& path, OutputFormat format) {
  std::ifstream file(path, std::ios::binary);
  switch (format) {
    case OutputFormat::kJpeg:
      return EndsWith(file, kJpegEnd);
    case OutputFormat::kPng:
      return EndsWith(file, kPngEnd);
    case OutputFormat::kTiff:
      return Tiff(file).IsWhole();
  }
  return false;
}

}  // namespace lumvik
