// Filling the ExifInfo record of the C interface.
#ifndef LUMVIK_IMAGE_EXIF_INFO_H_
#define LUMVIK_IMAGE_EXIF_INFO_H_

#include <libexif/exif-data.h>

#include <string>

#include "image/raw_decoder.h"
#include "lumvik.h"

namespace lumvik {

// Fills the record from the file's EXIF block. Values that are missing or have an unexpected format become 0,
// empty text, or NaN for the position. False, with the record cleared, when libexif finds no block.
bool ReadExifFile(const std::string& path, ExifInfo& info);

// Degrees from a GPS value tag (2 latitude, 4 longitude), negative when its reference tag (1, 3) is south or
// west. NaN unless the value holds at least three complete rationals.
double ReadGpsCoordinate(ExifData& data, int value_tag, int reference_tag);

// The record from the RAW decoder's metadata, for files whose EXIF block libexif cannot read.
ExifInfo ExifInfoFromDecoded(const DecodedImage& decoded);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_EXIF_INFO_H_
