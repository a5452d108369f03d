#include "settings/camera_raw_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "settings/setting_table.h"

namespace lumvik::host {
namespace {

// As few digits as suffice: a float has half as many as a double.
template <typename Back>
std::string ShortestText(double theirs, float ours, const Back& back) {
  std::string text = NumberText(static_cast<float>(theirs));
  return static_cast<float>(back(*ReadNumber(text))) == ours ? text : NumberText(theirs);
}

std::string LevelText(float level) {
  return ShortestText(level * kCurveTop, level, [](double theirs) { return theirs / kCurveTop; });
}

}  // namespace

std::string Joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : "; ") + part;
  return text;
}

std::string TextOf(const CameraRawSettings& settings, const std::string& name) {
  const auto property = std::find_if(settings.properties.begin(), settings.properties.end(),
                                     [&](const auto& candidate) { return candidate.first == name; });
  return property == settings.properties.end() ? "" : Joined(property->second);
}

std::optional<double> ReadNumber(const std::string& text) {
  double number = 0;
  const char* first = text.data() + (text.rfind('+', 0) == 0 ? 1 : 0);
  const char* last = text.data() + text.size();
  const auto result = std::from_chars(first, last, number);
  if (result.ec != std::errc() || result.ptr != last || !std::isfinite(number)) return std::nullopt;
  return number;
}

std::optional<std::array<float, 2>> ReadPoint(const std::string& text) {
  const std::size_t comma = text.find(',');
  if (comma == std::string::npos) return std::nullopt;
  const std::size_t second = std::min(text.find_first_not_of(' ', comma + 1), text.size());
  const auto x = ReadNumber(text.substr(0, comma));
  const auto y = ReadNumber(text.substr(second));
  if (!x || !y) return std::nullopt;
  const std::array<float, 2> point = {static_cast<float>(*x / kCurveTop), static_cast<float>(*y / kCurveTop)};
  if (!kCurveLevels.Holds(point[0]) || !kCurveLevels.Holds(point[1])) return std::nullopt;
  return point;
}

std::string PointText(const std::array<float, 2>& point) {
  return LevelText(point[0]) + ", " + LevelText(point[1]);
}

std::string ScaledText(float ours, double factor) {
  return ShortestText(ours / factor, ours, [factor](double theirs) { return theirs * factor; });
}

}  // namespace lumvik::host
