#include "settings/settings_import.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "base/lower_case.h"
#include "settings/camera_raw_crop.h"
#include "settings/camera_raw_names.h"
#include "settings/camera_raw_text.h"
#include "settings/camera_raw_white_balance.h"
#include "settings/settings_file.h"

namespace lumvik::host {
namespace {

constexpr float kGray = -100;  // saturation
constexpr StoredFrame kDefaultFrame = {3, 2, 1};

constexpr char kTrue[] = "True";
constexpr char kNoCounterpart[] = "no counterpart";
constexpr char kVignetteAmount[] = "PostCropVignetteAmount";
constexpr char kVignettePrefix[] = "PostCropVignette";
constexpr const char* kCropNames[] = {"CropLeft",   "CropTop",   "CropRight",
                                      "CropBottom", "CropAngle", "HasCrop"};

struct NumberRule {
  std::string key;
  double factor;
  Range range;  // of values that have a counterpart
};

std::optional<NumberRule> NumberRuleOf(const std::string& name) {
  for (const CameraRawNumber& number : kCameraRawNumbers) {
    if (name != number.name) continue;
    const Range range = FindSettingRule(number.key)->range;
    return NumberRule{number.key,
                      number.factor,
                      {std::max(range.lowest, number.lowest), std::min(range.highest, number.highest)}};
  }
  for (const CameraRawBandNumber& number : kCameraRawBandNumbers) {
    if (name.rfind(number.name, 0) != 0) continue;
    const std::string color = LowerCase(name.substr(std::string(number.name).size()));
    const SettingRule* rule = FindSettingRule("hsl." + color + number.key);
    if (rule != nullptr) return NumberRule{rule->key, number.factor, rule->range};
  }
  return std::nullopt;
}

class SettingsImporter {
 public:
  explicit SettingsImporter(const CameraRawSettings& from) : from_(from), white_balance_(from) {}

  SettingsImport Run() {
    crop_fault_ = ConvertCrop();
    for (const auto& [name, parts] : from_.properties) {
      property_ = {name, Joined(parts), Outcome::kTaken, "", ""};
      Import(parts);
      done_.properties.push_back(property_);
    }
    if (Text("ConvertToGrayscale") == kTrue) done_.settings["saturation"] = kGray;
    for (const auto& [name, parts] : from_.own_properties) {
      property_ = {std::string(kOwnPrefix) + ':' + name, Joined(parts), Outcome::kTaken, "", ""};
      ImportOwn(name);
      done_.properties.push_back(property_);
    }
    return std::move(done_);
  }

 private:
  std::string Text(const std::string& name) const { return TextOf(from_, name); }

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
    if (CameraRawWhiteBalance::Holds(name)) {
      ImportWhiteBalance();
    } else if (name.rfind(kCameraRawCurve, 0) == 0) {
      ImportCurve(parts);
    } else if (std::find(std::begin(kCropNames), std::end(kCropNames), name) != std::end(kCropNames)) {
      ImportCrop();
    } else if (name.rfind(kVignettePrefix, 0) == 0 && name != kVignetteAmount && HasIgnoredVignette()) {
      Ignore("the vignette is ignored");
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

  bool HasIgnoredVignette() const { return ReadNumber(Text(kVignetteAmount)).value_or(0) < 0; }

  // Our own values win: they are those that Camera Raw settings do not hold exactly.
  void ImportOwn(const std::string& name) {
    if (name != kOwnSettings) return Ignore(kNoCounterpart);
    try {
      Settings own = ParseSettings(property_.value);
      own.merge(done_.settings);
      done_.settings = std::move(own);
    } catch (const Failure& fault) {
      Ignore(fault.what());
    }
  }

  void ImportWhiteBalance() {
    if (property_.name == "WhiteBalance" && white_balance_.IsAsShot()) return ImportAsShot();
    const ConvertedWhiteBalance converted = white_balance_.Convert(property_.name);
    if (converted.key.empty()) return Ignore(converted.note);
    Take(converted.key);
    if (!converted.note.empty()) Scale(converted.key, converted.note);
    done_.settings[converted.key] = Clamped(converted.value, FindSettingRule(converted.key)->range);
  }

  void ImportAsShot() {
    for (const char* key : {"temperature", "tint"}) {
      done_.settings[key] = FindSettingRule(key)->NeutralValue();
    }
    Scale("temperature", "neutral");
  }

  // The value of the property's key, within the range. Notes if that changes it.
  float Clamped(double value, const Range& range) {
    const auto held = static_cast<float>(std::clamp<double>(value, range.lowest, range.highest));
    if (held != static_cast<float>(value)) Scale(property_.key, "clamped to " + range.Text());
    return held;
  }

  void ImportNumber(const NumberRule& rule) {
    const auto number = ReadNumber(property_.value);
    if (!number) return Ignore("it is not a number");
    const double scaled = *number * rule.factor + 0.0;  // never -0
    if (IsLostIn(rule, scaled)) {
      return Ignore(std::string("no counterpart ") + (*number < 0 ? "below 0" : "above 0"));
    }
    Take(rule.key);
    if (rule.factor != 1 && *number != 0) {
      Scale(rule.key, "times " + NumberText(rule.factor));
    }
    const float held = Clamped(scaled, rule.range);
    const auto [setting, is_new] = done_.settings.emplace(rule.key, held);
    if (!is_new) setting->second = std::max(std::get<float>(setting->second), held);
  }

  // Whether clamping would leave nothing: the range ends at the neutral value, 0.
  static bool IsLostIn(const NumberRule& rule, double scaled) {
    const bool is_neutral_zero = std::get<float>(FindSettingRule(rule.key)->NeutralValue()) == 0;
    return is_neutral_zero &&
           ((scaled < 0 && rule.range.lowest == 0) || (scaled > 0 && rule.range.highest == 0));
  }

  void ImportCurve(const std::vector<std::string>& parts) {
    const std::string color = LowerCase(property_.name.substr(std::string(kCameraRawCurve).size()));
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
    const Range angles = FindSettingRule("rotation")->range;
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
  CameraRawWhiteBalance white_balance_;
  SettingsImport done_;
  ImportedProperty property_{};  // being imported
  std::string crop_fault_;
  bool is_same_crop_ = false;
  bool frame_is_guessed_ = false;
};

}  // namespace

SettingsImport ImportSettings(const CameraRawSettings& from) {
  return SettingsImporter(from).Run();
}

}  // namespace lumvik::host
