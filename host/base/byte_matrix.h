// Bytes as OpenCV's decoders take them.
#ifndef LUMVIK_HOST_BASE_BYTE_MATRIX_H_
#define LUMVIK_HOST_BASE_BYTE_MATRIX_H_

#include <opencv2/core.hpp>
#include <string_view>

namespace lumvik::host {

// A row over the bytes of an encoded image, which is not copied. Only for reading. At most 2 GB.
inline cv::Mat ByteMatrix(std::string_view bytes) {
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast): OpenCV has no matrix of constants
  return {1, static_cast<int>(bytes.size()), CV_8UC1, const_cast<char*>(bytes.data())};
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_BASE_BYTE_MATRIX_H_
