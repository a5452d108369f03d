// Memory for whole images.
#ifndef LUMVIK_BASE_LARGE_IMAGE_H_
#define LUMVIK_BASE_LARGE_IMAGE_H_

#include <opencv2/core.hpp>

namespace lumvik {

// A fresh image with undefined content. Its memory comes in large pages where the system has them: touching a
// fresh page for the first time otherwise costs more than the work of a simple stage on it.
cv::Mat LargeImage(cv::Size size, int type);

}  // namespace lumvik

#endif  // LUMVIK_BASE_LARGE_IMAGE_H_
