#include "base/text_cut.h"

#include <algorithm>
#include <cstring>

namespace lumvik::host {
namespace {

constexpr char kNotACharacter[] = "?";

bool IsControl(char c) {
  constexpr char kDelete = 0x7F;
  return (c >= 0 && c < ' ') || c == kDelete;
}

// The number of bytes of the character at the start of a text that is not empty; 0 if there is none. Table
// 3-7 of the Unicode standard.
std::size_t CharacterSize(std::string_view text) noexcept {
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(text[index]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t size = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < size) return 0;
  // Neither overlong nor a surrogate nor beyond U+10FFFF.
  const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byte(1) < lowest || byte(1) > highest) return 0;
  for (std::size_t i = 2; i < size; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return 0;
  }
  return size;
}

}  // namespace

bool IsPlainUtf8(std::string_view text) noexcept {
  while (!text.empty()) {
    const std::size_t size = CharacterSize(text);
    if (size == 0 || IsControl(text[0])) return false;
    text.remove_prefix(size);
  }
  return true;
}

void CopyCut(std::string_view text, char* buffer, std::size_t capacity) noexcept {
  std::size_t used = 0;
  while (!text.empty()) {
    const std::size_t size = CharacterSize(text);
    const std::string_view character = size == 0            ? kNotACharacter
                                       : IsControl(text[0]) ? " "
                                                            : text.substr(0, size);
    if (used + character.size() >= capacity) break;
    std::memcpy(buffer + used, character.data(), character.size());
    used += character.size();
    text.remove_prefix(std::max<std::size_t>(size, 1));
  }
  buffer[used] = '\0';
}

}  // namespace lumvik::host
