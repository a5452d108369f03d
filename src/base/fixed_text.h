// Fixed-size text fields.
#ifndef LUMVIK_BASE_FIXED_TEXT_H_
#define LUMVIK_BASE_FIXED_TEXT_H_

#include <cstddef>
#include <cstring>

namespace lumvik {

// Truncates the text to fit and fills the rest of the field, at least one byte, with NUL.
template <size_t kSize>
void CopyText(char (&field)[kSize], const char* text) {
  std::memset(field, 0, kSize);
  std::memcpy(field, text, strnlen(text, kSize - 1));
}

}  // namespace lumvik

#endif  // LUMVIK_BASE_FIXED_TEXT_H_
