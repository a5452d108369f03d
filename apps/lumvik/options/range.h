// The range of a setting or option.
#ifndef LUMVIK_APPS_OPTIONS_RANGE_H_
#define LUMVIK_APPS_OPTIONS_RANGE_H_

#include <sstream>
#include <string>
#include <type_traits>

namespace lumvik {

template <typename Number>
struct Range {
  Number lowest;
  Number highest;

  // False for NaN.
  bool Holds(Number value) const { return value >= lowest && value <= highest; }

  std::string Text() const {
    std::ostringstream text;
    text << lowest << ".." << highest;
    return text.str();
  }

  // The error message for the user's input `shown`.
  std::string Fault(const std::string& shown) const {
    return shown + " is not " + (std::is_integral_v<Number> ? "a whole number" : "a number") + " in " +
           Text();
  }
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_RANGE_H_
