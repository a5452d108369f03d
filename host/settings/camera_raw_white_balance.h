// Converts a Camera Raw white balance to the engine's, which is relative to that of the camera.
#ifndef LUMVIK_HOST_SETTINGS_CAMERA_RAW_WHITE_BALANCE_H_
#define LUMVIK_HOST_SETTINGS_CAMERA_RAW_WHITE_BALANCE_H_

#include <string>

#include "metadata/metadata_module.h"

namespace lumvik::host {

// What a property of the white balance becomes.
struct ConvertedWhiteBalance {
  std::string key;  // of our setting; "" if the property is ignored
  double value = 0;
  std::string note;
};

class CameraRawWhiteBalance {
 public:
  explicit CameraRawWhiteBalance(const CameraRawSettings& from);

  static bool Holds(const std::string& name);

  // As Shot, the camera's: neutral, whatever the other properties are.
  bool IsAsShot() const;

  // Converts a property other than an As Shot "WhiteBalance". The value may be out of the setting's range.
  ConvertedWhiteBalance Convert(const std::string& name) const;

 private:
  ConvertedWhiteBalance Temperature(double kelvin) const;
  ConvertedWhiteBalance Tint(double tint) const;
  ConvertedWhiteBalance Incremental(const std::string& name, double number) const;
  std::string Preset() const;

  const CameraRawSettings& from_;
  WhitePoint as_shot_;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_CAMERA_RAW_WHITE_BALANCE_H_
