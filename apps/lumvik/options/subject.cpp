#include "options/subject.h"

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <vector>

#include "options/number_list.h"

namespace lumvik {
namespace {

constexpr Range<float> kWithinImage = {0, 1};

}  // namespace

CLI::Option* AddSubjectOption(CLI::App& command, SubjectPoint& point) {
  const auto keep = [&point](const std::string& text) {
    try {
      const std::vector<float> numbers = ReadNumbers(text, {kWithinImage, kWithinImage});
      point = {numbers[0], numbers[1]};
    } catch (const std::invalid_argument& fault) {
      throw CLI::ValidationError("--at", fault.what());
    }
  };
  return command
      .add_option_function<std::string>("--at", keep,
                                        "Where to look for the subject, as fractions 0..1 of width and "
                                        "height from the top left corner (default: the center)")
      ->type_name("X,Y");
}

}  // namespace lumvik
