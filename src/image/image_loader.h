// Recognizing and decoding ordinary (non-RAW) images.
#ifndef LUMVIK_IMAGE_IMAGE_LOADER_H_
#define LUMVIK_IMAGE_IMAGE_LOADER_H_

#include <cstdint>
#include <string>
#include <vector>

#include "image/image_buffer.h"

namespace lumvik {

// True when the path's extension, in upper or lower case, is .jpg, .jpeg, .png, .tif, .tiff, .bmp or .webp.
// Any other path is treated as a camera RAW file.
bool IsStandardImagePath(const std::string& path);

// Decodes an image file by its content; `flag` is one of cv::ImreadModes. Empty when it cannot be decoded.
// Throws only when memory runs out.
cv::Mat DecodeImage(const std::vector<uint8_t>& bytes, int flag);

// The same for the file at a path; also empty when it cannot be read.
cv::Mat ReadImageFileUtf8(const std::string& path, int flag);

// A photo as the pipeline's source: upright by its EXIF orientation, opaque, at most 4096 pixels on the long
// side. Empty when the file cannot be read or decoded.
ImageBuffer LoadStandardImage(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_IMAGE_LOADER_H_
