#include "develop/settings_import.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <iterator>
#include <optional>
#include <sstream>

#include "develop/camera_raw_crop.h"
#include "develop/camera_raw_names.h"

namespace lumvik {
namespace {

constexpr float kNeutralTemperature = 6500;  // keeps the camera's white balance
constexpr float kGray = -100;                // saturation
constexpr double kCurveTop = 255;
constexpr StoredFrame kDefaultFrame = {3, 2, 1};

constexpr char kAsShot[] = "As Shot";
constexpr char kTrue[] = "True";
constexpr char kNoCounterpart[] = "no counterpart";
constexpr char kCurveName[] = "ToneCurvePV2012";  // the master curve; others append the color
constexpr const char* kCropNames[] = {"CropLeft",   "CropTop",   "CropRight",
                                      "CropBottom", "CropAngle", "HasCrop"};

std::optional<double> ReadNumber(const std::string& text) {
  double number = 0;
  const char* first = text.data() + (text.rfind('+', 0) == 0 ? 1 : 0);
  const char* last = text.data() + text.size();
  const auto result = std::from_chars(first, last, number);
  if (result.ec != std::errc() || result.ptr != last || !std::isfinite(number)) return std::nullopt;
  return number;
}

// Two numbers separated by a comma and usually a space.
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

std::string LowerCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string Joined(const std::vector<std::string>& parts) {
  std::string text;
  for (const std::string& part : parts) text += (text.empty() ? "" : "; ") + part;
  return text;
}

struct NumberRule {
  std::string key;
  double factor;
  Range<float> range;  // of values that have a counterpart
};

std::optional<NumberRule> NumberRuleOf(const std::string& name) {
  for (const CameraRawNumber& number : kCameraRawNumbers) {
    if (name != number.name) continue;
    const Range<float> range = FindSettingRule(number.key)->range;
    return NumberRule{number.key, number.factor, {std::max(range.lowest, number.lowest), range.highest}};
  }
  for (const CameraRawBandNumber& number : kCameraRawBandNumbers) {
    if (name.rfind(number.name, 0) != 0) continue;
    const std::string color = LowerCase(name.substr(std::string(number.name).size()));
    const SettingRule* rule = FindSettingRule("hsl." + color + number.key);
    if (rule != nullptr) return NumberRule{rule->key, number.factor, rule->range};
  }
  return std::nullopt;
}

class Importer {
 public:
  explicit Importer(const CameraRawSettings& from) : from_(from) {}

  SettingsImport Run() {
    crop_fault_ = ConvertCrop();
    for (const auto& [name, parts] : from_.properties) {
      property_ = {name, Joined(parts), Outcome::kTaken, "", ""};
      Import(parts);
      done_.properties.push_back(property_);
    }
    if (Text("ConvertToGrayscale") == kTrue) done_.settings["saturation"] = kGray;
    return std::move(done_);
  }

 private:
  std::string Text(const std::string& name) const {
    const auto property = std::find_if(from_.properties.begin(), from_.properties.end(),
                                       [&](const auto& candidate) { return candidate.first == name; });
    return property == from_.properties.end() ? "" : Joined(property->second);
  }

  void Take(const std::string& key) { property_.key = key; }

  void Scale(const std::string& key, const std::string& note) {
    property_.outcome = Outcome::kScaled;
    property_.key = key;
    property_.note += (property_.note.empty() ? "" : ", ") + note;
  }

  void Ignore(const std::string& why) {
    property_.outcome = Outcome::kIgnored;
    property_.note = why;
  }

  void Import(const std::vector<std::string>& parts) {
    const std::string& name = property_.name;
    if (name == "WhiteBalance") {
      ImportWhiteBalance();
    } else if ((name == "Temperature" || name == "Tint") && Text("WhiteBalance") == kAsShot) {
      Ignore("the white balance is As Shot");
    } else if (name.rfind(kCurveName, 0) == 0) {
      ImportCurve(parts);
    } else if (std::find(std::begin(kCropNames), std::end(kCropNames), name) != std::end(kCropNames)) {
      ImportCrop();
    } else if (name == "ConvertToGrayscale" && property_.value == kTrue) {
      Scale("saturation", "gray");
    } else if (name == "AlreadyApplied" && property_.value == kTrue) {
      Ignore("the settings are already applied to the pixels");
    } else if (const auto rule = NumberRuleOf(name)) {
      ImportNumber(*rule);
    } else {
      Ignore(kNoCounterpart);
    }
  }

  void ImportWhiteBalance() {
    if (property_.value != kAsShot) return Ignore("given by Temperature and Tint");
    done_.settings["temperature"] = kNeutralTemperature;
    done_.settings["tint"] = 0.0F;
    Scale("temperature", "neutral");
  }

  void ImportNumber(const NumberRule& rule) {
    const auto number = ReadNumber(property_.value);
    if (!number) return Ignore("it is not a number");
    const double scaled = *number * rule.factor + 0.0;  // never -0
    const auto held = static_cast<float>(std::clamp<double>(scaled, rule.range.lowest, rule.range.highest));
    Take(rule.key);
    if (rule.factor != 1 && *number != 0) {
      std::ostringstream factor;
      factor << "times " << rule.factor;
      Scale(rule.key, factor.str());
    }
    if (held != static_cast<float>(scaled)) Scale(rule.key, "clamped to " + rule.range.Text());
    const auto [setting, is_new] = done_.settings.emplace(rule.key, held);
    if (!is_new) setting->second = std::max(std::get<float>(setting->second), held);
  }

  void ImportCurve(const std::vector<std::string>& parts) {
    const std::string color = LowerCase(property_.name.substr(std::string(kCurveName).size()));
    const std::string key = "tone_curves." + (color.empty() ? kCurveNames[LUMVIK_CURVE_MASTER] : color);
    if (FindSettingRule(key) == nullptr) return Ignore(kNoCounterpart);
    ToneCurve curve;
    for (const std::string& part : parts) {
      const auto point = ReadPoint(part);
      if (!point) return Ignore("'" + part + "' is not a point of a curve");
      curve.push_back(*point);
    }
    const std::string fault = CurveFault(curve);
    if (!fault.empty()) return Ignore(fault);
    // An empty curve is exactly linear in the engine, two points are not.
    if (curve == ToneCurve{{0, 0}, {1, 1}}) curve.clear();
    done_.settings[key] = curve;
    Scale(key, "divided by 255");
  }

  // Sets crop and rotation. Returns the reason if it cannot, else "".
  std::string ConvertCrop() {
    const auto left = ReadNumber(Text("CropLeft"));
    const auto top = ReadNumber(Text("CropTop"));
    const auto right = ReadNumber(Text("CropRight"));
    const auto bottom = ReadNumber(Text("CropBottom"));
    if (Text("HasCrop") != kTrue || !left || !top || !right || !bottom)
      return "the crop is incomplete or disabled";
    const std::string angle_text = Text("CropAngle");
    const auto angle = angle_text.empty() ? 0.0 : ReadNumber(angle_text);
    const Range<float> angles = FindSettingRule("rotation")->range;
    if (!angle || !angles.Holds(static_cast<float>(*angle))) return angles.Fault("CropAngle");
    StoredFrame frame = from_.frame;
    if (frame.width <= 0 || frame.height <= 0) {
      frame = {kDefaultFrame.width, kDefaultFrame.height, frame.orientation};
      frame_is_guessed_ = *angle != 0;
    }
    const TurnedCrop crop = TurnCrop({*left, *top, *right, *bottom, *angle}, frame);
    is_same_crop_ = crop.rotation == 0 && frame.orientation == 1;
    return KeepCrop(crop) ? "" : "the crop lies outside the image";
  }

  // Sets the part of the crop within the image, which keeps its size when it is rotated. Returns whether
  // there is any.
  bool KeepCrop(const TurnedCrop& crop) {
    const double x = std::clamp(crop.x, 0.0, 1.0);
    const double y = std::clamp(crop.y, 0.0, 1.0);
    const double w = std::clamp(crop.x + crop.w, 0.0, 1.0) - x;
    const double h = std::clamp(crop.y + crop.h, 0.0, 1.0) - y;
    if (!(w > 0 && h > 0)) return false;  // or NaN
    done_.settings["crop.x"] = static_cast<float>(x);
    done_.settings["crop.y"] = static_cast<float>(y);
    done_.settings["crop.w"] = static_cast<float>(w);
    done_.settings["crop.h"] = static_cast<float>(h);
    done_.settings["rotation"] = static_cast<float>(crop.rotation);
    return true;
  }

  void ImportCrop() {
    if (!crop_fault_.empty()) return Ignore(crop_fault_);
    if (property_.name == "CropAngle") return Take("rotation");
    Take("crop");
    if (!is_same_crop_) Scale("crop", "rotated with the image");
    if (frame_is_guessed_) Scale("crop", "assuming a 3:2 image");
  }

  const CameraRawSettings& from_;
  SettingsImport done_;
  ImportedProperty property_{};  // being imported
  std::string crop_fault_;
  bool is_same_crop_ = false;
  bool frame_is_guessed_ = false;
};

}  // namespace

SettingsImport ImportSettings(const CameraRawSettings& from) {
  return Importer(from).Run();
}

}  // namespace lumvik
