#include <string>

#include "settings/json_writer.h"
#include "settings/settings_import.h"

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
  JsonWriter json;
  json.BeginObject();
  json.Add("file", JsonText(file));
  json.BeginList("properties");
  for (const ImportedProperty& property : properties) {
    json.BeginObject();
    json.Add("name", JsonText(property.name));
    json.Add("value", JsonText(property.value));
    json.Add("outcome", JsonText(OutcomeName(property.outcome)));
    json.Add("key", JsonText(property.key));
    json.Add("note", JsonText(property.note));
    json.End();
  }
  json.End();
  json.End();
  return json.Text() + '\n';
}

}  // namespace lumvik::host
