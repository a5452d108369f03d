// Texts in buffers of a fixed size.
#ifndef LUMVIK_HOST_BASE_TEXT_CUT_H_
#define LUMVIK_HOST_BASE_TEXT_CUT_H_

#include <array>
#include <cstddef>
#include <string_view>

namespace lumvik::host {

// The text of a failure. Bounded, so that running out of memory can be reported.
using TextBuffer = std::array<char, 2048>;  // more than a path and a reason take

// Whether a text is UTF-8 without control characters.
bool IsPlainUtf8(std::string_view text) noexcept;

// Copies a text with a terminating NUL to a buffer of `capacity` bytes, at least 1. A longer text is cut
// between characters. The result is one line of UTF-8, whatever the text holds: a byte that is not part of a
// character becomes "?", a control character a space.
void CopyCut(std::string_view text, char* buffer, std::size_t capacity) noexcept;

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_BASE_TEXT_CUT_H_
