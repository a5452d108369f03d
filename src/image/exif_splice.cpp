#include "image/exif_splice.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sstream>

#include "base/file_io.h"
#include "image/exif_data.h"

namespace lumvik {
namespace {

constexpr uint8_t kMarker = 0xFF;
constexpr uint8_t kStartOfImage = 0xD8;
constexpr uint8_t kApp0 = 0xE0;
constexpr uint8_t kApp1 = 0xE1;
constexpr size_t kStartMarkerSize = 2;
constexpr size_t kSegmentHeaderSize = 4;  // marker and length

std::vector<uint8_t> SerializeExif(ExifData& data) {
  unsigned char* bytes = nullptr;
  unsigned int size = 0;
  exif_data_save_data(&data, &bytes, &size);
  const std::unique_ptr<unsigned char, decltype(&std::free)> owner(bytes, &std::free);
  return bytes == nullptr ? std::vector<uint8_t>() : std::vector<uint8_t>(bytes, bytes + size);
}

// False when the file cannot be opened, is empty, or cannot be read completely.
bool ReadStream(const std::string& path, std::vector<uint8_t>& bytes) {
  std::ifstream input(SystemPath(path), std::ios::binary);
  std::ostringstream content;
  content << input.rdbuf();
  if (!input || !content) return false;
  const std::string text = content.str();
  bytes.assign(text.begin(), text.end());
  return true;
}

bool IsJpeg(const std::vector<uint8_t>& bytes) {
  return bytes.size() >= 4 && bytes[0] == kMarker && bytes[1] == kStartOfImage;
}

// The position after the APP0 and APP1 segments that follow the SOI marker.
size_t EndOfOldHeader(const std::vector<uint8_t>& jpeg) {
  size_t position = kStartMarkerSize;
  while (position + kSegmentHeaderSize <= jpeg.size() && jpeg[position] == kMarker &&
         (jpeg[position + 1] == kApp0 || jpeg[position + 1] == kApp1)) {
    position += 2U + (size_t{jpeg[position + 2]} << 8U) + jpeg[position + 3];
  }
  return std::min(position, jpeg.size());
}

}  // namespace

std::vector<uint8_t> SpliceExif(const std::vector<uint8_t>& jpeg, const std::vector<uint8_t>& exif) {
  const auto length = static_cast<uint16_t>(exif.size() + 2);
  const uint8_t header[] = {kMarker,
                            kStartOfImage,
                            kMarker,
                            kApp1,
                            static_cast<uint8_t>(length >> 8U),
                            static_cast<uint8_t>(length & 0xFFU)};
  const auto rest = jpeg.begin() + static_cast<std::ptrdiff_t>(EndOfOldHeader(jpeg));
  std::vector<uint8_t> spliced(std::begin(header), std::end(header));
  spliced.insert(spliced.end(), exif.begin(), exif.end());
  spliced.insert(spliced.end(), rest, jpeg.end());
  return spliced;
}

bool CopyExifToJpeg(const std::string& source_path, const std::string& jpeg_path) {
  const ExifDataPtr data = LoadExifData(source_path);
  if (!data) return false;
  std::vector<uint8_t> jpeg;
  if (!ReadStream(jpeg_path, jpeg) || !IsJpeg(jpeg)) return false;
  const std::vector<uint8_t> exif = SerializeExif(*data);
  if (exif.empty()) return false;
  const std::vector<uint8_t> spliced = SpliceExif(jpeg, exif);
  std::ofstream output(SystemPath(jpeg_path), std::ios::binary | std::ios::trunc);
  output.write(reinterpret_cast<const char*>(spliced.data()), static_cast<std::streamsize>(spliced.size()));
  output.close();
  return output.good();
}

}  // namespace lumvik
