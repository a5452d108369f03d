#include "settings/camera_raw_white_balance.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "settings/camera_raw_text.h"
#include "settings/range.h"

namespace lumvik::host {
namespace {

constexpr double kMired = 1e6;
constexpr double kNeutralKelvin = 6500;  // of the engine

constexpr char kWhiteBalance[] = "WhiteBalance";
constexpr char kTemperature[] = "Temperature";
constexpr char kTint[] = "Tint";
constexpr char kAsShotTemperature[] = "AsShotTemperature";
constexpr char kAsShotTint[] = "AsShotTint";
constexpr char kIncrementalTemperature[] = "IncrementalTemperature";
constexpr char kIncrementalTint[] = "IncrementalTint";
constexpr const char* kNames[] = {kWhiteBalance,      kTemperature, kTint,
                                  kAsShotTemperature, kAsShotTint,  kIncrementalTemperature,
                                  kIncrementalTint};

ConvertedWhiteBalance Ignored(const std::string& why) {
  return {"", 0, why};
}

std::string WholeText(double number) {
  return NumberText(std::round(number) + 0.0);  // never -0
}

// Lowering the mired value makes a picture warmer.
double WarmerBy(double mired) {
  const double result = kMired / kNeutralKelvin - mired;
  return result > 0 ? kMired / result : HUGE_VAL;
}

}  // namespace

CameraRawWhiteBalance::CameraRawWhiteBalance(const CameraRawSettings& from)
    : from_(from), as_shot_(from.as_shot) {
  const auto temperature = ReadNumber(TextOf(from, kAsShotTemperature));
  const auto tint = ReadNumber(TextOf(from, kAsShotTint));
  if (temperature && *temperature > 0) as_shot_.temperature = *temperature;
  if (tint) as_shot_.tint = *tint;
}

bool CameraRawWhiteBalance::Holds(const std::string& name) {
  return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

bool CameraRawWhiteBalance::IsAsShot() const {
  return TextOf(from_, kWhiteBalance) == "As Shot";
}

ConvertedWhiteBalance CameraRawWhiteBalance::Convert(const std::string& name) const {
  if (name == kWhiteBalance) return Ignored(Preset());
  if (IsAsShot()) return Ignored("the white balance is As Shot");
  const auto number = ReadNumber(TextOf(from_, name));
  if (!number) return Ignored("it is not a number");
  if (name == kTemperature) return Temperature(*number);
  if (name == kTint) return Tint(*number);
  if (name == kIncrementalTemperature || name == kIncrementalTint) return Incremental(name, *number);
  return Ignored("Temperature and Tint are relative to it");
}

std::string CameraRawWhiteBalance::Preset() const {
  for (const char* name : {kTemperature, kTint, kIncrementalTemperature, kIncrementalTint}) {
    if (!TextOf(from_, name).empty()) return "given by Temperature and Tint";
  }
  return "its temperature is not in the file";
}

ConvertedWhiteBalance CameraRawWhiteBalance::Temperature(double kelvin) const {
  if (!(kelvin > 0)) return Ignored("it is not a temperature");
  if (std::isnan(as_shot_.temperature)) return Ignored(from_.no_as_shot);
  return {"temperature", WarmerBy(kMired / as_shot_.temperature - kMired / kelvin),
          "6500 plus the difference in mired from " + WholeText(as_shot_.temperature) + " as shot"};
}

ConvertedWhiteBalance CameraRawWhiteBalance::Tint(double tint) const {
  if (std::isnan(as_shot_.tint)) return Ignored(from_.no_as_shot);
  return {"tint", tint - as_shot_.tint, "minus " + WholeText(as_shot_.tint) + " as shot"};
}

ConvertedWhiteBalance CameraRawWhiteBalance::Incremental(const std::string& name, double number) const {
  const bool is_tint = name == kIncrementalTint;
  const char* const absolute = is_tint ? kTint : kTemperature;
  if (!TextOf(from_, absolute).empty() && !std::isnan(as_shot_.temperature)) {
    return Ignored(std::string("given by ") + absolute);
  }
  if (is_tint) return {"tint", number, ""};
  return {"temperature", WarmerBy(number), "6500, warmer by 1 mired each"};
}

}  // namespace lumvik::host
