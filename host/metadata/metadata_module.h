// What needs the metadata module, a separate library that is loaded at run time. Without it, every function
// but ReadModuleExif throws Failure with LUMVIK_HOST_UNSUPPORTED.
#ifndef LUMVIK_HOST_METADATA_METADATA_MODULE_H_
#define LUMVIK_HOST_METADATA_METADATA_MODULE_H_

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "color/correlated_temperature.h"
#include "lumvik_host.h"

namespace lumvik::host {

void RequireMetadataModule();

// The image as stored by the camera, to which crop coordinates refer.
struct StoredFrame {
  int width = 0;  // pixels; 0 when unknown
  int height = 0;
  int orientation = 1;  // EXIF code, 1..8
};

// Camera Raw settings, as stored in XMP.
struct CameraRawSettings {
  std::string file;  // where they were found
  StoredFrame frame;
  // By name without the prefix "crs:", in file order. A value has one part, or the items of a list.
  std::vector<std::pair<std::string, std::vector<std::string>>> properties;
  // The same of the namespace "lumvik", see lumvik_host_settings_to_xmp().
  std::vector<std::pair<std::string, std::vector<std::string>>> own_properties;
  // The white balance of the photograph as shot, to which ours refers, or why it is unknown.
  WhitePoint as_shot = {};
  std::string no_as_shot = "the white balance as shot is unknown";
};

// Reads the settings of an .xmp file, or of a photograph: from its XMP sidecar, else from its own metadata.
// Throws Failure: LUMVIK_HOST_NOT_FOUND if there are none.
CameraRawSettings ReadCameraRawSettings(const std::string& path);

struct MetadataOptions {
  bool keep_position = true;
  std::optional<std::string> copyright;
  bool is_srgb = true;  // the image, whatever the photograph states
};

// An image with the metadata of a photograph about the shot and its author. `image`, a file, may state its
// orientation but nothing else. Size and orientation are set to those of the image; without one its pixels
// are upright. Data about the original file, such as thumbnails and maker notes, is dropped. A photograph in
// a format without metadata is not an error.
//
// What is damaged, or does not fit the format of the image, is left out: for each such part a sentence is
// added to `warnings`, where `shown` names the photograph. Throws Failure: LUMVIK_HOST_UNSUPPORTED for a new
// copyright that the format cannot hold.
std::string WithMetadata(std::string image, const std::string& photograph, const std::string& shown,
                         const MetadataOptions& options, std::vector<std::string>& warnings);

// What the module knows of a photograph; "" for what it does not.
struct ModuleExif {
  std::string lens;
  std::string datetime;  // "2024:05:31 18:20:00"
};
ModuleExif ReadModuleExif(const std::string& path);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_METADATA_METADATA_MODULE_H_
