// Settings of Adobe Camera Raw and Lightroom, as XMP keeps them.
#ifndef LUMVIK_APPS_CAMERA_RAW_SETTINGS_H_
#define LUMVIK_APPS_CAMERA_RAW_SETTINGS_H_

#include <string>
#include <utility>
#include <vector>

namespace lumvik {

// The picture as the camera stored it, which the numbers of a crop refer to.
struct StoredFrame {
  int width = 0;  // pixels; 0 when it is not known
  int height = 0;
  int orientation = 1;  // EXIF code: how it is to be turned for looking at it
};

struct CameraRawSettings {
  std::string file;  // that held them
  StoredFrame frame;
  // By name, without the prefix "crs:", in the order of the file. The value of most has one part; that of a
  // list has its items.
  std::vector<std::pair<std::string, std::vector<std::string>>> properties;
};

// Reads the settings in a file ending in .xmp, or those of a photograph: in its XMP sidecar, else in itself.
// Throws std::runtime_error with a sentence for the user when there are none.
CameraRawSettings ReadCameraRawSettings(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_CAMERA_RAW_SETTINGS_H_
