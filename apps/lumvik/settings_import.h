// Settings of Camera Raw turned into those of the engine.
#ifndef LUMVIK_APPS_SETTINGS_IMPORT_H_
#define LUMVIK_APPS_SETTINGS_IMPORT_H_

#include <string>
#include <vector>

#include "camera_raw_settings.h"
#include "settings.h"

namespace lumvik {

enum class Outcome {
  kTaken,   // with the same value
  kScaled,  // with another, as the note says
  kIgnored  // for the reason in the note
};

struct ImportedProperty {
  std::string name;   // of Camera Raw
  std::string value;  // as it stands there
  Outcome outcome;
  std::string key;  // what it became; "" when it is ignored
  std::string note;
};

struct SettingsImport {
  Settings settings;
  std::vector<ImportedProperty> properties;  // one for each of the file, in its order
};

SettingsImport ImportSettings(const CameraRawSettings& from);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SETTINGS_IMPORT_H_
