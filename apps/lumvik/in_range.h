// The check of a numeric option.
#ifndef LUMVIK_APPS_IN_RANGE_H_
#define LUMVIK_APPS_IN_RANGE_H_

#include <CLI/CLI.hpp>
#include <sstream>
#include <string>
#include <type_traits>

namespace lumvik {

// Accepts a number from `lowest` to `highest`, which the help shows as "lowest..highest". The comparison is
// worded so that NaN, which is neither below nor above a bound, is refused.
template <typename Number>
CLI::Validator InRange(Number lowest, Number highest) {
  std::ostringstream range;
  range << lowest << ".." << highest;
  const std::string kind = std::is_integral_v<Number> ? "a whole number" : "a number";
  const auto check = [=, shown = range.str()](const std::string& text) -> std::string {
    Number value{};
    if (CLI::detail::lexical_cast(text, value) && value >= lowest && value <= highest) return {};
    return "'" + text + "' is not " + kind + " in " + shown;
  };
  return CLI::Validator(check, range.str());
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_IN_RANGE_H_
