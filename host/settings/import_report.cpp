#include <string>

#include "settings/settings_import.h"
#include "settings/settings_json.h"

namespace lumvik::host {
namespace {

const char* OutcomeName(Outcome outcome) {
  switch (outcome) {
    case Outcome::kTaken:
      return "taken";
    case Outcome::kScaled:
      return "scaled";
    default:
      return "ignored";
  }
}

}  // namespace

std::string ImportReport(const std::string& file, const std::vector<ImportedProperty>& properties) {
  Json list = Json::array();
  for (const ImportedProperty& property : properties) {
    list.push_back({{"name", property.name},
                    {"value", property.value},
                    {"outcome", OutcomeName(property.outcome)},
                    {"key", property.key},
                    {"note", property.note}});
  }
  const Json report = {{"file", file}, {"properties", list}};
  // File names need not be valid UTF-8, but JSON must.
  return report.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace lumvik::host
