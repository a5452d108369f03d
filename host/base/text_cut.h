// Texts in buffers of a fixed size.
#ifndef LUMVIK_HOST_BASE_TEXT_CUT_H_
#define LUMVIK_HOST_BASE_TEXT_CUT_H_

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace lumvik::host {

// Copies UTF-8 text with a terminating NUL to a buffer of `capacity` bytes, at least 1. A longer text is cut
// between characters.
inline void CopyCut(std::string_view text, char* buffer, std::size_t capacity) noexcept {
  constexpr unsigned kContinuationMask = 0xC0;
  constexpr unsigned kContinuation = 0x80;
  const auto is_inside_character = [&](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & kContinuationMask) == kContinuation;
  };
  std::size_t size = std::min(text.size(), capacity - 1);
  while (size > 0 && is_inside_character(size)) --size;
  std::memcpy(buffer, text.data(), size);
  buffer[size] = '\0';
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_BASE_TEXT_CUT_H_
