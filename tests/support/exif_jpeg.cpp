#include "support/exif_jpeg.h"

#include <algorithm>
#include <opencv2/imgcodecs.hpp>
#include <stdexcept>
#include <utility>

namespace lumvik::test {
namespace {

constexpr uint32_t kTiffHeaderSize = 8;
constexpr size_t kExifEntrySize = 12;
constexpr uint64_t kExifInlineSize = 4;
constexpr size_t kMaxSegment = 65533;

constexpr Ifd kAllIfds[] = {Ifd::kZero, Ifd::kOne, Ifd::kExif, Ifd::kGps, Ifd::kInteroperability};

// The tags with which a directory points to another.
constexpr struct {
  Ifd from;
  uint16_t tag;
  Ifd to;
} kPointers[] = {
    {Ifd::kZero, 0x8769, Ifd::kExif},
    {Ifd::kZero, 0x8825, Ifd::kGps},
    {Ifd::kExif, 0xA005, Ifd::kInteroperability},
};

uint64_t FormatSize(TiffFormat format) {
  constexpr uint64_t kSizes[] = {0, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8};
  return kSizes[static_cast<size_t>(format)];
}

}  // namespace

ExifBlock& ExifBlock::Entry(Ifd ifd, uint16_t tag, TiffFormat format, uint32_t components,
                            std::vector<uint8_t> value) {
  fields_.push_back({ifd, tag, format, components, std::move(value)});
  return *this;
}

ExifBlock& ExifBlock::Ascii(Ifd ifd, uint16_t tag, const std::string& text) {
  std::vector<uint8_t> value(text.begin(), text.end());
  value.push_back(0);
  return Entry(ifd, tag, TiffFormat::kAscii, static_cast<uint32_t>(value.size()), value);
}

ExifBlock& ExifBlock::Shorts(Ifd ifd, uint16_t tag, const std::vector<uint16_t>& values) {
  std::vector<uint8_t> bytes;
  for (const uint16_t value : values) Append(bytes, value, 2);
  return Entry(ifd, tag, TiffFormat::kShort, static_cast<uint32_t>(values.size()), bytes);
}

ExifBlock& ExifBlock::Longs(Ifd ifd, uint16_t tag, const std::vector<uint32_t>& values) {
  std::vector<uint8_t> bytes;
  for (const uint32_t value : values) Append(bytes, value, 4);
  return Entry(ifd, tag, TiffFormat::kLong, static_cast<uint32_t>(values.size()), bytes);
}

ExifBlock& ExifBlock::Rationals(Ifd ifd, uint16_t tag, const std::vector<Rational>& values) {
  std::vector<uint8_t> bytes;
  for (const Rational& value : values) {
    Append(bytes, value.numerator, 4);
    Append(bytes, value.denominator, 4);
  }
  return Entry(ifd, tag, TiffFormat::kRational, static_cast<uint32_t>(values.size()), bytes);
}

ExifBlock& ExifBlock::SignedRationals(Ifd ifd, uint16_t tag, const std::vector<Rational>& values) {
  Rationals(ifd, tag, values);
  fields_.back().format = TiffFormat::kSignedRational;
  return *this;
}

void ExifBlock::Append(std::vector<uint8_t>& bytes, uint32_t number, size_t size) const {
  for (size_t i = 0; i < size; ++i) {
    const size_t shift = 8 * (order_ == ByteOrder::kLittle ? i : size - 1 - i);
    bytes.push_back(static_cast<uint8_t>(number >> shift));
  }
}

std::vector<ExifBlock::Field> ExifBlock::Directory(Ifd ifd, const Offsets& offsets) const {
  std::vector<Field> directory;
  std::copy_if(fields_.begin(), fields_.end(), std::back_inserter(directory),
               [ifd](const Field& field) { return field.ifd == ifd; });
  for (const auto& pointer : kPointers) {
    if (pointer.from != ifd || Directory(pointer.to, offsets).empty()) continue;
    std::vector<uint8_t> offset;
    Append(offset, offsets[static_cast<size_t>(pointer.to)], 4);
    directory.push_back({ifd, pointer.tag, TiffFormat::kLong, 1, offset});
  }
  return directory;
}

void ExifBlock::AppendDirectory(std::vector<uint8_t>& bytes, const std::vector<Field>& directory,
                                uint32_t values_offset, std::vector<uint8_t>& values) const {
  Append(bytes, static_cast<uint32_t>(directory.size()), 2);
  for (const Field& field : directory) {
    Append(bytes, field.tag, 2);
    Append(bytes, static_cast<uint32_t>(field.format), 2);
    Append(bytes, field.components, 4);
    if (field.components * FormatSize(field.format) > kExifInlineSize) {
      Append(bytes, values_offset + static_cast<uint32_t>(values.size()), 4);
      values.insert(values.end(), field.value.begin(), field.value.end());
    } else {
      std::vector<uint8_t> value = field.value;
      value.resize(kExifInlineSize);
      bytes.insert(bytes.end(), value.begin(), value.end());
    }
  }
}

std::vector<uint8_t> ExifBlock::Serialize() const {
  Offsets offsets{};
  uint32_t end = kTiffHeaderSize;
  for (const Ifd ifd : kAllIfds) {
    const size_t entries = Directory(ifd, offsets).size();
    if (entries == 0 && ifd != Ifd::kZero) continue;
    offsets[static_cast<size_t>(ifd)] = end;
    end += static_cast<uint32_t>(2 + entries * kExifEntrySize + 4);
  }

  const uint8_t order = order_ == ByteOrder::kLittle ? 'I' : 'M';
  std::vector<uint8_t> bytes = {'E', 'x', 'i', 'f', 0, 0, order, order};
  Append(bytes, 42, 2);
  Append(bytes, kTiffHeaderSize, 4);
  std::vector<uint8_t> values;
  for (const Ifd ifd : kAllIfds) {
    if (offsets[static_cast<size_t>(ifd)] == 0) continue;
    AppendDirectory(bytes, Directory(ifd, offsets), end, values);
    Append(bytes, ifd == Ifd::kZero ? offsets[static_cast<size_t>(Ifd::kOne)] : 0, 4);
  }
  bytes.insert(bytes.end(), values.begin(), values.end());
  return bytes;
}

std::vector<uint8_t> PlainJpeg() {
  std::vector<uint8_t> jpeg;
  cv::imencode(".jpg", cv::Mat(48, 64, CV_8UC3, cv::Scalar::all(128)), jpeg);
  return jpeg;
}

std::vector<uint8_t> JpegWithExif(const std::vector<uint8_t>& exif, const std::vector<uint8_t>& jpeg) {
  if (exif.size() > kMaxSegment) throw std::invalid_argument("the block does not fit a segment");
  const auto length = static_cast<uint32_t>(exif.size() + 2);
  const uint8_t header[] = {0xFF, 0xE1, static_cast<uint8_t>(length >> 8U),
                            static_cast<uint8_t>(length & 0xFFU)};
  std::vector<uint8_t> result = jpeg;
  result.insert(result.begin() + 2, exif.begin(), exif.end());
  result.insert(result.begin() + 2, std::begin(header), std::end(header));
  return result;
}

}  // namespace lumvik::test
