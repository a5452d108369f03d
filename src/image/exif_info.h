// Filling the host's EXIF record.
#ifndef LUMVIK_IMAGE_EXIF_INFO_H_
#define LUMVIK_IMAGE_EXIF_INFO_H_

#include <libexif/exif-data.h>

#include <string>

#include "image/raw_decoder.h"
#include "lumvik.h"

namespace lumvik {

// Fills the record from the file's EXIF block. What the block lacks or holds in an unexpected format is 0,
// an empty text, or NaN for the position. False, with the record cleared, when libexif finds no block.
bool ReadExifFile(const std::string& path, ExifInfo& info);

// Degrees of a GPS value tag (2 latitude, 4 longitude), negated when its reference tag (1, 3) says south or
// west. NaN unless the value is three rationals held in full.
double ReadGpsCoordinate(ExifData& data, int value_tag, int reference_tag);

// The record from what the RAW decoder knows, for files whose EXIF block libexif cannot read.
ExifInfo ExifInfoFromDecoded(const DecodedImage& decoded);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_EXIF_INFO_H_
