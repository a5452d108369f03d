// Allocating whole images.
#ifndef LUMVIK_BASE_LARGE_IMAGE_H_
#define LUMVIK_BASE_LARGE_IMAGE_H_

#include <cstddef>
#include <opencv2/core.hpp>

namespace lumvik {

// An image with undefined content, in huge pages where the system has them: with small pages, first touching
// the memory costs more than running a simple stage over it.
cv::Mat LargeImage(cv::Size size, int type);

// The same for memory that was allocated elsewhere and not yet touched.
void PreferHugePages(void* memory, size_t bytes);

}  // namespace lumvik

#endif  // LUMVIK_BASE_LARGE_IMAGE_H_
