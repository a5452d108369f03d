// Encoding an image into a file.
#ifndef LUMVIK_IMAGE_IMAGE_WRITER_H_
#define LUMVIK_IMAGE_IMAGE_WRITER_H_

#include <opencv2/core.hpp>
#include <string>
#include <vector>

namespace lumvik {

// Encodes `image` (8 or 16 bits, channel order as OpenCV's encoders take it: blue first) in the format of
// the path's ending, everything from its last dot, and writes the file. `params` are cv::imencode's
// (id, value) pairs. The file is only touched once the encoding succeeded; true only when all of it was
// written. Throws std::out_of_range for a path without a dot, cv::Exception for an ending without encoder.
bool WriteImageFile(const std::string& path, const cv::Mat& image, const std::vector<int>& params);

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_IMAGE_WRITER_H_
