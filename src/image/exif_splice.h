// Copying a photo's EXIF block into a JPEG file.
#ifndef LUMVIK_IMAGE_EXIF_SPLICE_H_
#define LUMVIK_IMAGE_EXIF_SPLICE_H_

#include <cstdint>
#include <string>
#include <vector>

namespace lumvik {

// `jpeg` with its leading APP0 and APP1 segments replaced by one APP1 segment holding `exif`, a serialized
// block that starts with its "Exif" header. The segment's 16-bit length wraps for blocks of more than 65533
// bytes. `jpeg` must start with an SOI marker and be at least 4 bytes long.
std::vector<uint8_t> SpliceExif(const std::vector<uint8_t>& jpeg, const std::vector<uint8_t>& exif);

// Rewrites the JPEG file with the EXIF block of `source_path`. False, with the file unchanged, when the
// source has no EXIF block or the file is not a JPEG; also false when writing fails, which may truncate the
// file.
bool CopyExifToJpeg(const std::string& source_path, const std::string& jpeg_path);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_EXIF_SPLICE_H_
