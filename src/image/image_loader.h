// Ordinary images: which files they are, and decoding them.
#ifndef LUMVIK_IMAGE_IMAGE_LOADER_H_
#define LUMVIK_IMAGE_IMAGE_LOADER_H_

#include <cstdint>
#include <string>
#include <vector>

#include "image/image_buffer.h"

namespace lumvik {

// True when the path ends, in any case of letters, in .jpg, .jpeg, .png, .tif, .tiff, .bmp or .webp.
// Every other path is taken for a camera RAW file.
bool IsStandardImagePath(const std::string& path);

// Decodes an image file by its content; `flag` is one of cv::ImreadModes. Empty when it cannot be decoded.
// Only exhausted memory leaves as an exception.
cv::Mat DecodeImage(const std::vector<uint8_t>& bytes, int flag);

// The same for a file by its path; empty also when it cannot be read.
cv::Mat ReadImageFileUtf8(const std::string& path, int flag);

// A photograph as the pipeline's source: turned upright by its EXIF orientation, 8 bits widened to 16, at
// most 4096 pixels on the long side, opaque. Empty when the file cannot be read or decoded.
ImageBuffer LoadStandardImage(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_IMAGE_LOADER_H_
