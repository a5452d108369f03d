// Named values that every build must reproduce exactly: digests of bytes, and numbers in full precision.
#ifndef LUMVIK_TESTS_CHECKSUMS_CHECKSUM_LIST_H_
#define LUMVIK_TESTS_CHECKSUMS_CHECKSUM_LIST_H_

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace lumvik::checksums {

// A list is a text of lines "name value", or "name numbers tolerance" where numbers need not be exact; a name
// or value has no spaces.
class ChecksumList {
 public:
  // Reads a list. Lines that start with "#" are comments.
  static ChecksumList Read(std::istream& text);

  void Print(std::ostream& text) const;

  // Adds the XXH3 digest of 128 bits.
  void AddBytes(const std::string& name, const void* data, std::size_t size);
  void AddBytes(const std::string& name, const std::vector<std::uint8_t>& bytes);

  // Adds numbers with as many digits as distinguish every float, or every double.
  void AddFloats(const std::string& name, const std::vector<float>& numbers);
  void AddDoubles(const std::string& name, const std::vector<double>& numbers);

  // Adds numbers that may be off by `tolerance`.
  void AddNear(const std::string& name, const std::vector<double>& numbers, double tolerance);

  void AddHash(const std::string& name, std::uint64_t hash);

  // One line for each entry that `actual` lacks, has in addition, or has with another value or tolerance.
  std::vector<std::string> Differences(const ChecksumList& actual) const;

 private:
  struct Entry {
    std::string value;
    std::string tolerance;  // empty: exact
  };

  static bool Matches(const Entry& expected, const Entry& actual);

  void Add(const std::string& name, Entry entry);

  std::map<std::string, Entry> entries_;
};

}  // namespace lumvik::checksums

#endif  // LUMVIK_TESTS_CHECKSUMS_CHECKSUM_LIST_H_
