// JPEG files with an EXIF block made to order, well-formed or not.
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

  // Whatever an entry may claim. A claim of more than four bytes puts `value` behind the directories. The
  // values stand there in the order in which they were added, and nothing follows: a last value shorter than
  // its claim ends with the block.
  ExifBlock& Entry(Ifd ifd, uint16_t tag, TiffFormat format, uint32_t components, std::vector<uint8_t> value);

  // From the "Exif" header to the last value.
  std::vector<uint8_t> Serialize() const;

 private:
  struct Field {
    Ifd ifd;
    uint16_t tag;
    TiffFormat format;
    uint32_t components;
    std::vector<uint8_t> value;
  };

  // Where each directory begins in the block, 0 for none.
  using Offsets = std::array<uint32_t, 5>;

  // The fields of the directory and its pointers to the directories below it that have any.
  std::vector<Field> Directory(Ifd ifd, const Offsets& offsets) const;
  // Appends the directory to `bytes`, and to `values`, which begins at `values_offset`, what it does not
  // hold.
  void AppendDirectory(std::vector<uint8_t>& bytes, const std::vector<Field>& directory,
                       uint32_t values_offset, std::vector<uint8_t>& values) const;
  void Append(std::vector<uint8_t>& bytes, uint32_t number, size_t size) const;

  ByteOrder order_;
  std::vector<Field> fields_;
};

// A gray picture of 64 x 48.
std::vector<uint8_t> PlainJpeg();

// `jpeg` with the block in an APP1 segment behind its start marker.
std::vector<uint8_t> JpegWithExif(const std::vector<uint8_t>& exif,
                                  const std::vector<uint8_t>& jpeg = PlainJpeg());

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_EXIF_JPEG_H_
