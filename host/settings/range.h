// Ranges of numbers, and numbers as text.
#ifndef LUMVIK_HOST_SETTINGS_RANGE_H_
#define LUMVIK_HOST_SETTINGS_RANGE_H_

#include <array>
#include <charconv>
#include <string>

namespace lumvik::host {

// With the fewest digits that round-trip, whatever the locale.
template <typename Number>
std::string NumberText(Number number) {
  constexpr std::size_t kMaxDigits = 64;  // more than any float or double takes
  std::array<char, kMaxDigits> text{};
  const auto result = std::to_chars(text.data(), text.data() + text.size(), number);
  return {text.data(), result.ptr};
}

struct Range {
  float lowest = 0;
  float highest = 0;

  // False for NaN.
  bool Holds(float value) const { return value >= lowest && value <= highest; }

  std::string Text() const { return NumberText(lowest) + ".." + NumberText(highest); }

  // The error message for the user's input `shown`.
  std::string Fault(const std::string& shown) const { return shown + " is not a number in " + Text(); }
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_RANGE_H_
