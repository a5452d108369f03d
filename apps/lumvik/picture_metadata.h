// The metadata that a written picture takes over from its photograph.
#ifndef LUMVIK_APPS_PICTURE_METADATA_H_
#define LUMVIK_APPS_PICTURE_METADATA_H_

#include <string>

namespace lumvik {

// Copies what the file `photograph` tells of its taking and of its author, in EXIF, IPTC and XMP, into the
// finished JPEG, PNG or TIFF `picture`, in which only the engine has written so far. The size and the
// orientation in it become those of the picture, whose pixels are upright. What tells of the photograph's
// file rather than of the photograph stays behind: thumbnails, maker notes and the like. A photograph without
// metadata, or of a kind that has none, changes nothing; with `strip_gps` the place where it was taken stays
// behind too. Throws std::runtime_error when the metadata cannot be read or written.
void CopyMetadata(const std::string& photograph, const std::string& picture, bool strip_gps);

}  // namespace lumvik

#endif  // LUMVIK_APPS_PICTURE_METADATA_H_
