#include "support/tiff_writer.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace lumvik::test {
namespace {

constexpr uint16_t kByte = 1, kAscii = 2, kShort = 3, kLong = 4, kRational = 5, kSignedRational = 10;
constexpr int32_t kRealDenominator = 10'000'000;
constexpr size_t kHeaderSize = 8;
constexpr size_t kEntrySize = 12;
constexpr size_t kInlineValueSize = 4;

void Append16(std::vector<uint8_t>& bytes, uint32_t value) {
  bytes.push_back(static_cast<uint8_t>(value & 0xff));
  bytes.push_back(static_cast<uint8_t>(value >> 8 & 0xff));
}

void Append32(std::vector<uint8_t>& bytes, uint32_t value) {
  Append16(bytes, value & 0xffff);
  Append16(bytes, value >> 16);
}

void Put(std::vector<uint8_t>& bytes, size_t position, const std::vector<uint8_t>& value) {
  std::copy(value.begin(), value.end(), bytes.begin() + static_cast<std::ptrdiff_t>(position));
}

}  // namespace

void TiffDirectory::Set(uint16_t tag, Field field) {
  fields_[tag] = std::move(field);
  data_.erase(tag);
  const auto replaced = [tag](const Child& child) { return child.offset_tag == tag; };
  children_.erase(std::remove_if(children_.begin(), children_.end(), replaced), children_.end());
}

void TiffDirectory::SetBytes(uint16_t tag, const std::vector<uint8_t>& values) {
  Set(tag, {kByte, static_cast<uint32_t>(values.size()), values});
}

void TiffDirectory::SetAscii(uint16_t tag, const std::string& text) {
  std::vector<uint8_t> value(text.begin(), text.end());
  value.push_back(0);
  Set(tag, {kAscii, static_cast<uint32_t>(value.size()), value});
}

void TiffDirectory::SetShorts(uint16_t tag, const std::vector<uint16_t>& values) {
  Field field{kShort, static_cast<uint32_t>(values.size()), {}};
  for (const uint16_t value : values) Append16(field.value, value);
  Set(tag, std::move(field));
}

void TiffDirectory::SetLongs(uint16_t tag, const std::vector<uint32_t>& values) {
  Field field{kLong, static_cast<uint32_t>(values.size()), {}};
  for (const uint32_t value : values) Append32(field.value, value);
  Set(tag, std::move(field));
}

void TiffDirectory::SetRationals(uint16_t tag, const std::vector<Rational>& values) {
  Field field{kRational, static_cast<uint32_t>(values.size()), {}};
  for (const Rational& value : values) {
    Append32(field.value, value.numerator);
    Append32(field.value, value.denominator);
  }
  Set(tag, std::move(field));
}

void TiffDirectory::SetReals(uint16_t tag, const std::vector<double>& values) {
  Field field{kSignedRational, static_cast<uint32_t>(values.size()), {}};
  for (const double value : values) {
    Append32(field.value, static_cast<uint32_t>(std::lround(value * kRealDenominator)));
    Append32(field.value, kRealDenominator);
  }
  Set(tag, std::move(field));
}

void TiffDirectory::SetDirectory(uint16_t offset_tag, TiffDirectory directory) {
  SetLongs(offset_tag, {0});
  children_.push_back({offset_tag, std::move(directory)});
}

void TiffDirectory::SetData(uint16_t offset_tag, uint16_t length_tag, std::vector<uint8_t> bytes) {
  SetLongs(offset_tag, {0});
  SetLongs(length_tag, {static_cast<uint32_t>(bytes.size())});
  data_[offset_tag] = std::move(bytes);
}

class TiffSerializer {
 public:
  std::vector<uint8_t> Run(const TiffDirectory& first) {
    bytes_ = {'I', 'I', 42, 0};
    Append32(bytes_, kHeaderSize);
    WriteDirectory(first);
    size_t size = bytes_.size();
    for (const Block& block : blocks_) size += block.bytes->size() + 1;
    bytes_.reserve(size);
    for (const Block& block : blocks_) {
      PutOffset(block.offset_position);
      bytes_.insert(bytes_.end(), block.bytes->begin(), block.bytes->end());
    }
    return std::move(bytes_);
  }

 private:
  struct Block {
    size_t offset_position;
    const std::vector<uint8_t>* bytes;
  };

  void WriteDirectory(const TiffDirectory& directory) {
    const size_t start = bytes_.size();
    bytes_.resize(start + 2 + directory.fields_.size() * kEntrySize + 4);  // 4: no next directory
    std::vector<uint8_t> entry;
    Append16(entry, static_cast<uint32_t>(directory.fields_.size()));
    Put(bytes_, start, entry);

    std::map<uint16_t, size_t> value_positions;
    size_t position = start + 2;
    for (const auto& [tag, field] : directory.fields_) {
      entry.clear();
      Append16(entry, tag);
      Append16(entry, field.type);
      Append32(entry, field.count);
      Put(bytes_, position, entry);
      WriteValue(value_positions[tag] = position + 8, field.value);
      position += kEntrySize;
    }
    for (const auto& [offset_tag, data] : directory.data_) {
      blocks_.push_back({value_positions[offset_tag], &data});
    }
    for (const TiffDirectory::Child& child : directory.children_) {
      PutOffset(value_positions[child.offset_tag]);
      WriteDirectory(child.directory);
    }
  }

  void WriteValue(size_t position, const std::vector<uint8_t>& value) {
    if (value.size() <= kInlineValueSize) {
      Put(bytes_, position, value);
    } else {
      PutOffset(position);
      bytes_.insert(bytes_.end(), value.begin(), value.end());
    }
  }

  // Pads to an even offset and stores it in the four bytes at `position`.
  void PutOffset(size_t position) {
    bytes_.resize(bytes_.size() + bytes_.size() % 2);
    std::vector<uint8_t> offset;
    Append32(offset, static_cast<uint32_t>(bytes_.size()));
    Put(bytes_, position, offset);
  }

  std::vector<uint8_t> bytes_;
  std::vector<Block> blocks_;
};

std::vector<uint8_t> TiffDirectory::Serialize() const {
  return TiffSerializer().Run(*this);
}

}  // namespace lumvik::test
