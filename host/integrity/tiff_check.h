// Finds damage in TIFF files and what is missing at the end of RAW files built like them.
#ifndef LUMVIK_HOST_INTEGRITY_TIFF_CHECK_H_
#define LUMVIK_HOST_INTEGRITY_TIFF_CHECK_H_

#include <optional>
#include <string_view>

#include "files/tiff_reading.h"
#include "integrity/damage.h"

namespace lumvik::host {

// Directories and image data. Cameras write other values that refer to nowhere.
std::optional<Damage> CheckTiffImages(std::string_view tiff, const TiffReader& reader);

// The same, the values of every entry, and what the decoder reports.
std::optional<Damage> CheckTiff(std::string_view tiff);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_INTEGRITY_TIFF_CHECK_H_
