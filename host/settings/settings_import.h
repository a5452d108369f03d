// Converts settings in XMP, of Camera Raw or our own, to settings.
#ifndef LUMVIK_HOST_SETTINGS_SETTINGS_IMPORT_H_
#define LUMVIK_HOST_SETTINGS_SETTINGS_IMPORT_H_

#include <string>
#include <vector>

#include "metadata/metadata_module.h"
#include "settings/settings.h"

namespace lumvik::host {

enum class Outcome {
  kTaken,   // same value
  kScaled,  // different value, as explained in the note
  kIgnored  // for the reason in the note
};

struct ImportedProperty {
  std::string name;   // in Camera Raw, or with the prefix "lumvik:"
  std::string value;  // as found in the file
  Outcome outcome;
  std::string key;  // of the setting; "" when ignored or when the property holds several
  std::string note;
};

struct SettingsImport {
  Settings settings;
  std::vector<ImportedProperty> properties;  // one per property of the file, in order
};

// The imported settings are within the ranges of SettingRules.
SettingsImport ImportSettings(const CameraRawSettings& from);

// The properties and where they were found, as a JSON object.
std::string ImportReport(const std::string& file, const std::vector<ImportedProperty>& properties);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_SETTINGS_IMPORT_H_
