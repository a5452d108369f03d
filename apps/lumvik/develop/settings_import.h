// Converts Camera Raw settings to our own.
#ifndef LUMVIK_APPS_DEVELOP_SETTINGS_IMPORT_H_
#define LUMVIK_APPS_DEVELOP_SETTINGS_IMPORT_H_

#include <string>
#include <vector>

#include "develop/camera_raw_settings.h"
#include "develop/settings.h"

namespace lumvik {

enum class Outcome {
  kTaken,   // same value
  kScaled,  // different value, as explained in the note
  kIgnored  // for the reason in the note
};

struct ImportedProperty {
  std::string name;   // in Camera Raw
  std::string value;  // as found in the file
  Outcome outcome;
  std::string key;  // of our setting; "" when ignored
  std::string note;
};

struct SettingsImport {
  Settings settings;
  std::vector<ImportedProperty> properties;  // one per property of the file, in order
};

// The imported settings are within the ranges of SettingRules.
SettingsImport ImportSettings(const CameraRawSettings& from);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_SETTINGS_IMPORT_H_
