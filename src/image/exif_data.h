// libexif's view of a file's EXIF block.
#ifndef LUMVIK_IMAGE_EXIF_DATA_H_
#define LUMVIK_IMAGE_EXIF_DATA_H_

#include <libexif/exif-data.h>

#include <memory>
#include <string>

namespace lumvik {

using ExifDataPtr = std::unique_ptr<ExifData, decltype(&exif_data_unref)>;

// Null when the file has no EXIF block that libexif can load.
ExifDataPtr LoadExifData(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_EXIF_DATA_H_
