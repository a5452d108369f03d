// Copies metadata from a photograph to the developed image.
#ifndef LUMVIK_APPS_DEVELOP_IMAGE_METADATA_H_
#define LUMVIK_APPS_DEVELOP_IMAGE_METADATA_H_

#include <string>

namespace lumvik {

// Copies the EXIF, IPTC and XMP data about the shot and its author from the file `photograph` to `path`, a
// JPEG, PNG or TIFF fresh from the engine. Size and orientation are set to those of the image, whose pixels
// are upright. Data about the original file, such as thumbnails and maker notes, is dropped, and so is the
// GPS data with `strip_gps`. Does nothing for a photograph without metadata. Throws std::runtime_error when
// the metadata cannot be read or written.
void CopyMetadata(const std::string& photograph, const std::string& path, bool strip_gps);

}  // namespace lumvik

#endif  // LUMVIK_APPS_DEVELOP_IMAGE_METADATA_H_
