#include "options/output_size.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string>

#include "options/range.h"

namespace lumvik {
namespace {

constexpr Range<int> kSides = {1, 100000};
constexpr double kWhole = 100;  // percent

bool ReadSide(const std::string& text, std::int32_t& side) {
  const bool is_number = !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
  return is_number && CLI::detail::lexical_cast(text, side) && kSides.Holds(side);
}

bool ReadPercent(const std::string& text, double& percent) {
  const bool is_decimal = !text.empty() && text.find_first_not_of("0123456789.") == std::string::npos;
  return is_decimal && CLI::detail::lexical_cast(text, percent) && percent > 0 && percent <= kWhole;
}

bool ReadSize(const std::string& text, OutputSize& size) {
  if (!text.empty() && text.back() == '%') return ReadPercent(text.substr(0, text.size() - 1), size.percent);
  const std::size_t cross = text.find('x');
  if (cross != std::string::npos) {
    return ReadSide(text.substr(0, cross), size.box.width) &&
           ReadSide(text.substr(cross + 1), size.box.height);
  }
  if (!ReadSide(text, size.box.width)) return false;
  size.box.height = size.box.width;
  return true;
}

std::int32_t Part(std::int32_t side, double percent) {
  return std::max(static_cast<std::int32_t>(std::lround(side * percent / kWhole)), 1);
}

}  // namespace

CLI::Option* AddSizeOption(CLI::App& command, OutputSize& size) {
  const auto keep = [&size](const std::string& text) {
    size = {};
    if (ReadSize(text, size)) return;
    throw CLI::ValidationError("--size", "'" + text + "' is not a size such as 2048, 1600x1200 or 50%");
  };
  return command
      .add_option_function<std::string>(
          "--size", keep,
          "Reduce the image: 2048 (long side), 1600x1200 (to fit) or 50%; it is never enlarged")
      ->type_name("SIZE");
}

api::Size BoxOf(const OutputSize& size, api::Size developed) {
  if (size.percent == 0) return size.box;
  return {Part(developed.width, size.percent), Part(developed.height, size.percent)};
}

}  // namespace lumvik
