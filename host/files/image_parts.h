// Adding parts to image files. Each function throws Failure with LUMVIK_HOST_DAMAGED for a file whose
// beginning is.
#ifndef LUMVIK_HOST_FILES_IMAGE_PARTS_H_
#define LUMVIK_HOST_FILES_IMAGE_PARTS_H_

#include <cstdint>
#include <string>
#include <string_view>

namespace lumvik::host {

// A segment of a JPEG. The payload has at most kMaxJpegPayload bytes.
std::string MakeJpegSegment(std::uint8_t marker, std::string_view payload);

// Inserts segments after the headers of JFIF and EXIF, which readers expect first.
std::string InsertIntoJpeg(std::string jpeg, std::string_view segments);

// Inserts a chunk after IHDR.
std::string InsertIntoPng(std::string png, std::string_view chunk);

// The types of TIFF entries with values of one byte.
enum class TiffByteType : std::uint8_t { kByte = 1, kUndefined = 7 };

// Sets an entry of the first directory of a little-endian TIFF: appends the values and a copy of the
// directory that refers to them.
std::string SetTiffEntry(std::string tiff, std::uint16_t tag, TiffByteType type, std::string_view values);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_IMAGE_PARTS_H_
