// Range validation of numeric options.
#ifndef LUMVIK_APPS_OPTIONS_IN_RANGE_H_
#define LUMVIK_APPS_OPTIONS_IN_RANGE_H_

#include <CLI/CLI.hpp>
#include <string>

#include "options/range.h"

namespace lumvik {

// Accepts numbers within the range, which the help shows as "lowest..highest".
template <typename Number>
CLI::Validator InRange(Range<Number> range) {
  const auto check = [=](const std::string& text) -> std::string {
    Number value{};
    if (CLI::detail::lexical_cast(text, value) && range.Holds(value)) return {};
    return range.Fault("'" + text + "'");
  };
  return CLI::Validator(check, range.Text());
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_IN_RANGE_H_
