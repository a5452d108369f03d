// Builds JPEG files with EXIF blocks, well-formed or not.
#ifndef LUMVIK_TESTS_SUPPORT_EXIF_JPEG_H_
#define LUMVIK_TESTS_SUPPORT_EXIF_JPEG_H_

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "support/tiff_writer.h"

namespace lumvik::test {

enum class ByteOrder { kLittle, kBig };

// The directories of an EXIF block.
enum class Ifd { kZero, kOne, kExif, kGps, kInteroperability };

// TIFF 6.0, page 15.
enum class TiffFormat : uint16_t {
  kByte = 1,
  kAscii,
  kShort,
  kLong,
  kRational,
  kSignedByte,
  kUndefined,
  kSignedShort,
  kSignedLong,
  kSignedRational,
  kFloat,
  kDouble
};

class ExifBlock {
 public:
  explicit ExifBlock(ByteOrder order = ByteOrder::kLittle) : order_(order) {}

  ExifBlock& Ascii(Ifd ifd, uint16_t tag, const std::string& text);  // a NUL is added
  ExifBlock& Shorts(Ifd ifd, uint16_t tag, const std::vector<uint16_t>& values);
  ExifBlock& Longs(Ifd ifd, uint16_t tag, const std::vector<uint32_t>& values);
  ExifBlock& Rationals(Ifd ifd, uint16_t tag, const std::vector<Rational>& values);
  ExifBlock& SignedRationals(Ifd ifd, uint16_t tag, const std::vector<Rational>& values);

  // An entry with any claim. When it claims more than four bytes, `value` is stored after the directories, in
  // the order of the calls; nothing follows the last value, which may be shorter than it claims.
  ExifBlock& Entry(Ifd ifd, uint16_t tag, TiffFormat format, uint32_t components, std::vector<uint8_t> value);

  // From the "Exif" header through the last value.
  std::vector<uint8_t> Serialize() const;

 private:
  struct Field {
    Ifd ifd;
    uint16_t tag;
    TiffFormat format;
    uint32_t components;
    std::vector<uint8_t> value;
  };

  // Each directory's offset in the block, 0 for none.
  using Offsets = std::array<uint32_t, 5>;

  // The directory's fields and its pointers to subdirectories that have fields.
  std::vector<Field> Directory(Ifd ifd, const Offsets& offsets) const;
  // Appends the directory to `bytes` and its out-of-line values to `values`, which starts at `values_offset`.
  void AppendDirectory(std::vector<uint8_t>& bytes, const std::vector<Field>& directory,
                       uint32_t values_offset, std::vector<uint8_t>& values) const;
  void Append(std::vector<uint8_t>& bytes, uint32_t number, size_t size) const;

  ByteOrder order_;
  std::vector<Field> fields_;
};

// A gray image of 64 x 48 pixels.
std::vector<uint8_t> PlainJpeg();

// `jpeg` with the block in an APP1 segment after its start marker.
std::vector<uint8_t> JpegWithExif(const std::vector<uint8_t>& exif,
                                  const std::vector<uint8_t>& jpeg = PlainJpeg());

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_EXIF_JPEG_H_
