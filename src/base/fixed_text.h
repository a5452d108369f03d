// Text fields of fixed size.
#ifndef LUMVIK_BASE_FIXED_TEXT_H_
#define LUMVIK_BASE_FIXED_TEXT_H_

#include <cstddef>
#include <cstring>

namespace lumvik {

// Cuts the text to the field; the rest of the field, at least one byte, becomes NUL.
template <size_t kSize>
void CopyText(char (&field)[kSize], const char* text) {
  std::memset(field, 0, kSize);
  std::memcpy(field, text, strnlen(text, kSize - 1));
}

}  // namespace lumvik

#endif  // LUMVIK_BASE_FIXED_TEXT_H_
