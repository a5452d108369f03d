#include "image/image_writer.h"

#include <opencv2/imgcodecs.hpp>
#include <stdexcept>

#include "base/file_io.h"

namespace lumvik {

bool WriteImageFile(const std::string& path, const cv::Mat& image, const std::vector<int>& params) {
  const size_t dot = path.rfind('.');
  // std::string's own exception has a different text in each standard library.
  if (dot == std::string::npos) throw std::out_of_range("invalid string position");
  std::vector<uint8_t> encoded;
  return cv::imencode(path.substr(dot), image, encoded, params) && WriteWholeFile(path, encoded);
}

}  // namespace lumvik
