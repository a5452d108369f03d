#include "options/number_list.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <stdexcept>

namespace lumvik {
namespace {

// Keeps a trailing empty part, which CLI11's function drops.
std::vector<std::string> SplitAtCommas(const std::string& text) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == ',') {
      parts.emplace_back();
    } else {
      parts.back() += c;
    }
  }
  return parts;
}

}  // namespace

std::vector<float> ReadNumbers(const std::string& text, const std::vector<Range<float>>& ranges) {
  const std::vector<std::string> parts = SplitAtCommas(text);
  if (parts.size() != ranges.size()) {
    throw std::invalid_argument("'" + text + "' is not " + std::to_string(ranges.size()) +
                                " numbers separated by commas");
  }
  std::vector<float> numbers(parts.size());
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (!CLI::detail::lexical_cast(parts[i], numbers[i]) || !ranges[i].Holds(numbers[i])) {
      throw std::invalid_argument(ranges[i].Fault("'" + parts[i] + "'"));
    }
  }
  return numbers;
}

}  // namespace lumvik
