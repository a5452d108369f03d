#include "whole_picture.h"

#include <cstdint>
#include <fstream>
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

// A little-endian number of `size` bytes, as the engine's TIFFs have them; 0 at the end of the file.
std::uint32_t NumberAt(std::ifstream& file, std::streamoff place, int size) {
  unsigned char bytes[4] = {};
  file.seekg(place);
  file.read(reinterpret_cast<char*>(bytes), size);
  std::uint32_t number = 0;
  for (int i = 3; i >= 0; --i) number = number << 8U | bytes[i];
  return number;
}

// The directory stands behind the pixels, and values too long for its entries behind the directory: each is
// to lie in the file. Only numbers of 2 and of 4 bytes are that long in what the engine writes.
bool HasTiffDirectory(std::ifstream& file) {
  constexpr std::uint32_t kBegin = 0x002A4949;
  constexpr std::uint32_t kLong = 4;
  constexpr std::streamoff kEntryBytes = 12;
  file.seekg(0, std::ios::end);
  const std::streamoff size = file.tellg();
  const std::streamoff directory = NumberAt(file, 4, 4);
  if (NumberAt(file, 0, 4) != kBegin || directory == 0) return false;
  const std::streamoff entries = directory + 2;
  const std::streamoff end =
      entries + kEntryBytes * static_cast<std::streamoff>(NumberAt(file, directory, 2));
  for (std::streamoff entry = entries; entry < end && end <= size; entry += kEntryBytes) {
    const std::streamoff bytes = (NumberAt(file, entry + 2, 2) == kLong ? 4 : 2) *
                                 static_cast<std::streamoff>(NumberAt(file, entry + 4, 4));
    if (bytes > 4 && NumberAt(file, entry + 8, 4) + bytes > size) return false;
  }
  return entries < end && end <= size;
}

}  // namespace

bool IsWholePicture(const std::string& path, OutputFormat format) {
  std::ifstream file(path, std::ios::binary);
  switch (format) {
    case OutputFormat::kJpeg:
      return EndsWith(file, kJpegEnd);
    case OutputFormat::kPng:
      return EndsWith(file, kPngEnd);
    case OutputFormat::kTiff:
      return HasTiffDirectory(file);
  }
  return false;
}

}  // namespace lumvik
