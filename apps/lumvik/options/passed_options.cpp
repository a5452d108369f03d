#include "options/passed_options.h"

#include <CLI/CLI.hpp>

namespace lumvik {
namespace {

// For a flag, the parser records only whether it was given by its first name or by the last, which negates
// it.
std::string Flag(const CLI::Option& option, const std::string& value) {
  const std::vector<std::string>& names = option.get_lnames();
  return "--" + (value == "false" ? names.back() : names.front());
}

}  // namespace

std::vector<std::string> PassedOptions(const std::vector<const CLI::Option*>& options) {
  std::vector<std::string> arguments;
  for (const CLI::Option* option : options) {
    const bool is_flag = option->get_items_expected_max() == 0;
    for (const std::string& value : option->results()) {
      // The equals sign allows values that start with a minus sign.
      arguments.push_back(is_flag ? Flag(*option, value) : "--" + option->get_lnames().front() + '=' + value);
    }
  }
  return arguments;
}

}  // namespace lumvik
