// Carrying a photograph's EXIF block into a JPEG file that was just written.
#ifndef LUMVIK_IMAGE_EXIF_SPLICE_H_
#define LUMVIK_IMAGE_EXIF_SPLICE_H_

#include <cstdint>
#include <string>
#include <vector>

namespace lumvik {

// `jpeg` with its leading APP0 and APP1 segments replaced by one APP1 segment that holds `exif` (a
// serialized block, beginning with its "Exif" header). The segment's 16-bit length wraps for a block of
// more than 65533 bytes. `jpeg` must begin with a start marker and be at least 4 bytes long.
std::vector<uint8_t> SpliceExif(const std::vector<uint8_t>& jpeg, const std::vector<uint8_t>& exif);

// Rewrites the JPEG file with the EXIF block of `source_path`. False, with the file as it was, when the
// source has no EXIF block or the file is no JPEG; false too when writing fails, which may cut the file.
bool CopyExifToJpeg(const std::string& source_path, const std::string& jpeg_path);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_EXIF_SPLICE_H_
