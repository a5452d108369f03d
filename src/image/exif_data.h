// Loading a file's EXIF block with libexif.
#ifndef LUMVIK_IMAGE_EXIF_DATA_H_
#define LUMVIK_IMAGE_EXIF_DATA_H_

#include <libexif/exif-data.h>

#include <memory>
#include <string>

namespace lumvik {

using ExifDataPtr = std::unique_ptr<ExifData, decltype(&exif_data_unref)>;

// Null when libexif finds no EXIF block.
ExifDataPtr LoadExifData(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_EXIF_DATA_H_
