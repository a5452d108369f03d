// Encoding an image to a file.
#ifndef LUMVIK_IMAGE_IMAGE_WRITER_H_
#define LUMVIK_IMAGE_IMAGE_WRITER_H_

#include <opencv2/core.hpp>
#include <string>
#include <vector>

namespace lumvik {

// Encodes `image` (8 or 16 bits, blue first) in the format given by the path's extension, everything from its
// last dot on, and writes the file. `params` are cv::imencode's (id, value) pairs. Does not touch the file
// unless encoding succeeds; true only when all of it was written. Throws std::out_of_range for a path without
// a dot and cv::Exception for an extension without an encoder.
bool WriteImageFile(const std::string& path, const cv::Mat& image, const std::vector<int>& params);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_IMAGE_WRITER_H_
