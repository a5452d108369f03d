// Adobe Camera Raw and Lightroom settings, as stored in XMP.
#ifndef LUMVIK_APPS_DEVELOP_CAMERA_RAW_SETTINGS_H_
#define LUMVIK_APPS_DEVELOP_CAMERA_RAW_SETTINGS_H_

#include <string>
#include <utility>
#include <vector>

namespace lumvik {

// The image as stored by the camera, to which crop coordinates refer.
struct StoredFrame {
  int width = 0;  // pixels; 0 when unknown
  int height = 0;
  int orientation = 1;  // EXIF code, 1..8
};

struct CameraRawSettings {
  std::string file;  // where they were found
  StoredFrame frame;
  // By name without the prefix "crs:", in file order. A value has one part, or the items of a list.
  std::vector<std::pair<std::string, std::vector<std::string>>> properties;
};

// Reads the settings of an .xmp file, or of a photograph: from its XMP sidecar, else from its own metadata.
// Throws std::runtime_error with a message for the user when there are none.
CameraRawSettings ReadCameraRawSettings(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_CAMERA_RAW_SETTINGS_H_
