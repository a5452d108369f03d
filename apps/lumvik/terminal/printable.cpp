#include "terminal/printable.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <string_view>

namespace lumvik {
namespace {

bool IsBetween(unsigned char byte, int low, int high) {
  return byte >= low && byte <= high;
}

// The size of the UTF-8 character at the beginning; 1 for a byte that begins none.
std::size_t CharacterSize(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t size = IsBetween(lead, 0xC2, 0xDF)   ? 2
                           : IsBetween(lead, 0xE0, 0xEF) ? 3
                           : IsBetween(lead, 0xF0, 0xF4) ? 4
                                                         : 1;
  if (size > text.size()) return 1;
  for (const char byte : text.substr(1, size - 1)) {
    if (!IsBetween(static_cast<unsigned char>(byte), 0x80, 0xBF)) return 1;
  }
  return size;
}

// C0, DEL, C1 (also as single bytes, which terminals without UTF-8 obey) and bidirectional formatting.
bool IsControl(std::string_view character) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(character[i]); };
  switch (character.size()) {
    case 1:
      return byte(0) < 0x20 || IsBetween(byte(0), 0x7F, 0x9F);
    case 2:
      return byte(0) == 0xC2 && byte(1) <= 0x9F;
    case 3:
      return byte(0) == 0xE2 && ((byte(1) == 0x80 && IsBetween(byte(2), 0xAA, 0xAE)) ||  // U+202A..202E
                                 (byte(1) == 0x81 && IsBetween(byte(2), 0xA6, 0xA9)));   // U+2066..2069
    default:
      return false;
  }
}

std::string Escaped(std::string_view character) {
  if (character == "\n") return "\\n";
  if (character == "\r") return "\\r";
  if (character == "\t") return "\\t";
  std::string escaped;
  for (const char byte : character) {
    std::array<char, 5> code{};
    std::snprintf(code.data(), code.size(), "\\x%02X",
                  static_cast<unsigned>(static_cast<unsigned char>(byte)));
    escaped += code.data();
  }
  return escaped;
}

}  // namespace

std::string Printable(const std::string& text) {
  std::string printable;
  printable.reserve(text.size());
  for (std::string_view rest = text; !rest.empty();) {
    const std::string_view character = rest.substr(0, CharacterSize(rest));
    rest.remove_prefix(character.size());
    if (IsControl(character)) {
      printable += Escaped(character);
    } else {
      printable += character;
    }
  }
  return printable;
}

}  // namespace lumvik
