#include "settings/settings_export.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "settings/camera_raw_names.h"
#include "settings/camera_raw_text.h"
#include "settings/settings_file.h"
#include "settings/settings_import.h"

namespace lumvik::host {
namespace {

using Property = std::pair<std::string, std::vector<std::string>>;

// The process version whose settings have these names. Without it, they would be ignored.
constexpr char kProcessVersion[] = "11.0";

class SettingsExporter {
 public:
  explicit SettingsExporter(const Settings& settings) : settings_(settings) {}

  CameraRawSettings Run() {
    done_.properties = {{"ProcessVersion", {kProcessVersion}}, {"HasSettings", {"True"}}};
    AddWhiteBalance();
    AddNumbers();
    AddBands();
    AddCurves();
    Settings others = settings_;
    for (const auto& [key, value] : ImportSettings(done_).settings) others.erase(key);
    done_.own_properties = {{kOwnSettings, {SettingsText(others)}}};
    return std::move(done_);
  }

 private:
  const SettingValue* Held(const std::string& key) const {
    const auto value = settings_.find(key);
    return value == settings_.end() ? nullptr : &value->second;
  }

  // Adds a property if it is read as what was written.
  void Add(const std::string& name, const std::vector<std::string>& parts) {
    const Property property = {name, parts};
    const Settings read = ImportSettings({"", {}, {property}, {}}).settings;
    const bool is_exact = !read.empty() && std::all_of(read.begin(), read.end(), [&](const auto& setting) {
      const SettingValue* held = Held(setting.first);
      return held != nullptr && *held == setting.second;
    });
    if (is_exact) done_.properties.push_back(property);
  }

  // A neutral white balance is As Shot. Any other is our own: a temperature in kelvin would depend on the
  // photograph, and other programs would take ours, which is relative, for one.
  void AddWhiteBalance() {
    const bool is_as_shot = ValueOf<float>(settings_, "temperature") == ValueOf<float>({}, "temperature") &&
                            ValueOf<float>(settings_, "tint") == ValueOf<float>({}, "tint");
    if (is_as_shot) Add("WhiteBalance", {"As Shot"});
  }

  void AddNumbers() {
    for (const CameraRawNumber& number : kCameraRawNumbers) {
      AddNumber(number.name, number.key, number.factor);
    }
  }

  void AddBands() {
    for (const std::string band : kBandNames) {
      for (const CameraRawBandNumber& number : kCameraRawBandNumbers) {
        AddNumber(number.name + Capitalized(band), "hsl." + band + number.key, number.factor);
      }
    }
  }

  void AddNumber(const std::string& name, const std::string& key, double factor) {
    if (const SettingValue* value = Held(key)) Add(name, {ScaledText(std::get<float>(*value), factor)});
  }

  void AddCurves() {
    for (const std::string name : kCurveNames) {
      const SettingValue* value = Held("tone_curves." + name);
      if (value == nullptr) continue;
      ToneCurve curve = std::get<ToneCurve>(*value);
      if (curve.empty()) curve = {{0, 0}, {1, 1}};
      std::vector<std::string> points;
      points.reserve(curve.size());
      for (const auto& point : curve) points.push_back(PointText(point));
      const bool is_master = name == kCurveNames[LUMVIK_CURVE_MASTER];
      Add(kCameraRawCurve + (is_master ? "" : Capitalized(name)), points);
    }
  }

  const Settings& settings_;
  CameraRawSettings done_;
};

}  // namespace

CameraRawSettings ExportSettings(const Settings& settings) {
  return SettingsExporter(settings).Run();
}

}  // namespace lumvik::host
