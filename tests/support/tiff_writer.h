// Builds TIFF files, the container of our RAW files.
#ifndef LUMVIK_TESTS_SUPPORT_TIFF_WRITER_H_
#define LUMVIK_TESTS_SUPPORT_TIFF_WRITER_H_

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace lumvik::test {

struct Rational {
  uint32_t numerator = 0;
  uint32_t denominator = 1;
};

// An image file directory. Setting a tag again replaces its value.
class TiffDirectory {
 public:
  void SetBytes(uint16_t tag, const std::vector<uint8_t>& values);
  void SetAscii(uint16_t tag, const std::string& text);
  void SetShorts(uint16_t tag, const std::vector<uint16_t>& values);
  void SetLongs(uint16_t tag, const std::vector<uint32_t>& values);
  void SetRationals(uint16_t tag, const std::vector<Rational>& values);
  // Written as signed fractions of ten million.
  void SetReals(uint16_t tag, const std::vector<double>& values);

  // `offset_tag` points to the directory, which follows this one in the file.
  void SetDirectory(uint16_t offset_tag, TiffDirectory directory);
  // `offset_tag` holds the offset of the bytes, `length_tag` their number.
  void SetData(uint16_t offset_tag, uint16_t length_tag, std::vector<uint8_t> bytes);

  // A little-endian file: header, directories, then data blocks, each directory's before those of its
  // subdirectories.
  std::vector<uint8_t> Serialize() const;

 private:
  friend class TiffSerializer;

  struct Field {
    uint16_t type;
    uint32_t count;
    std::vector<uint8_t> value;
  };
  struct Child;

  void Set(uint16_t tag, Field field);

  std::map<uint16_t, Field> fields_;  // TIFF requires ascending tags
  std::map<uint16_t, std::vector<uint8_t>> data_;
  std::vector<Child> children_;
};

struct TiffDirectory::Child {
  uint16_t offset_tag;
  TiffDirectory directory;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_TIFF_WRITER_H_
