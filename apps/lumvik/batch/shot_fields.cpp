#include "batch/shot_fields.h"

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>

#include "batch/isolated_reading.h"
#include "commands/shot_data.h"

namespace lumvik {
namespace {

constexpr std::size_t kTexts = 4;

// `line` is what the command printed.
ShotFields FieldsIn(const std::optional<std::string>& line) {
  const auto json = nlohmann::json::parse(line.value_or(""), nullptr, false);
  std::vector<std::string> texts(kTexts);
  for (std::size_t i = 0; json.is_array() && i < std::min(json.size(), kTexts); ++i) {
    if (json[i].is_string()) texts[i] = json[i].get<std::string>();
  }
  return ShotFieldsOf(texts[0], texts[1], texts[2], texts[3]);
}

}  // namespace

std::vector<ShotFields> ReadShotFields(const std::vector<std::string>& photographs) {
  const std::vector<std::optional<std::string>> lines = ReadIsolated(kShotDataCommand, photographs);
  std::vector<ShotFields> fields(lines.size());
  std::transform(lines.begin(), lines.end(), fields.begin(), FieldsIn);
  return fields;
}

}  // namespace lumvik
