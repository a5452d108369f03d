#include "settings/json_writer.h"

#include "settings/settings_json.h"

namespace lumvik::host {

std::string JsonText(const std::string& text) {
  return Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string JsonText(float number) {
  return Json(number).dump();
}

std::string JsonText(int number) {
  return std::to_string(number);
}

std::string JsonText(bool flag) {
  return flag ? "true" : "false";
}

void JsonWriter::End() {
  const Level level = levels_.back();
  levels_.pop_back();
  if (!level.is_empty) text_ += '\n' + std::string(2 * levels_.size(), ' ');
  text_ += level.closing;
}

void JsonWriter::Add(const std::string& key, const std::string& json) {
  StartLine(key);
  text_ += json;
}

void JsonWriter::Begin(const std::string& key, char opening, char closing) {
  StartLine(key);
  text_ += opening;
  levels_.push_back({closing, true});
}

void JsonWriter::StartLine(const std::string& key) {
  if (levels_.empty()) return;
  text_ += levels_.back().is_empty ? "\n" : ",\n";
  text_.append(2 * levels_.size(), ' ');
  levels_.back().is_empty = false;
  if (!key.empty()) text_ += JsonText(key) + ": ";
}

}  // namespace lumvik::host
