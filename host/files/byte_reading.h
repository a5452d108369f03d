// Checked reads from the bytes of a file.
#ifndef LUMVIK_HOST_FILES_BYTE_READING_H_
#define LUMVIK_HOST_FILES_BYTE_READING_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace lumvik::host {

enum class ByteOrder { kLittle, kBig };

// The bytes from `offset` on, at most `size`; fewer where the file ends.
inline std::string_view PartOf(std::string_view bytes, std::uint64_t offset, std::uint64_t size) {
  if (offset >= bytes.size()) return {};
  return bytes.substr(static_cast<std::size_t>(offset), static_cast<std::size_t>(size));
}

// An unsigned number of `width` bytes, 1 to 8; nothing where the file ends.
inline std::optional<std::uint64_t> NumberAt(std::string_view bytes, std::uint64_t offset, unsigned width,
                                             ByteOrder order) {
  const std::string_view digits = PartOf(bytes, offset, width);
  if (digits.size() != width) return std::nullopt;
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < width; ++i) {
    const std::size_t digit = order == ByteOrder::kBig ? i : width - 1 - i;
    number = number << 8U | static_cast<unsigned char>(digits[digit]);
  }
  return number;
}

// a + b, at most the largest number: a file may claim any offset and size.
inline std::uint64_t EndOf(std::uint64_t offset, std::uint64_t size) {
  return offset > UINT64_MAX - size ? UINT64_MAX : offset + size;
}

// a * b, at most the largest number.
inline std::uint64_t SizeOf(std::uint64_t count, std::uint64_t size) {
  return size != 0 && count > UINT64_MAX / size ? UINT64_MAX : count * size;
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_BYTE_READING_H_
