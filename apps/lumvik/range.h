// The numbers that a setting or an option may have.
#ifndef LUMVIK_APPS_RANGE_H_
#define LUMVIK_APPS_RANGE_H_

#include <sstream>
#include <string>
#include <type_traits>

namespace lumvik {

template <typename Number>
struct Range {
  Number lowest;
  Number highest;

  // Worded so that NaN, which is neither below nor above a bound, is outside.
  bool Holds(Number value) const { return value >= lowest && value <= highest; }

  std::string Text() const {
    std::ostringstream text;
    text << lowest << ".." << highest;
    return text.str();
  }

  // Says of what the user wrote, `shown`, that it is not in the range.
  std::string Fault(const std::string& shown) const {
    return shown + " is not " + (std::is_integral_v<Number> ? "a whole number" : "a number") + " in " +
           Text();
  }
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_RANGE_H_
