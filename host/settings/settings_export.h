// Converts settings to XMP.
#ifndef LUMVIK_HOST_SETTINGS_SETTINGS_EXPORT_H_
#define LUMVIK_HOST_SETTINGS_SETTINGS_EXPORT_H_

#include <string>

#include "metadata/metadata_module.h"
#include "settings/settings.h"

namespace lumvik::host {

// Properties from which ImportSettings makes exactly these values. Camera Raw settings hold those that have
// an exact inverse, our own property the others. A crop has none: theirs refers to the image as stored, and
// how that is turned depends on the photograph.
CameraRawSettings ExportSettings(const Settings& settings);

// The XMP packet with these properties.
std::string XmpPacket(const CameraRawSettings& settings);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_SETTINGS_EXPORT_H_
