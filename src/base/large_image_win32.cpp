#include "base/large_image.h"

namespace lumvik {

// On Windows large pages need a privilege that no user has by default.
void PreferHugePages(void* /*memory*/, size_t /*bytes*/) {}

cv::Mat LargeImage(cv::Size size, int type) {
  return {size, type};
}

}  // namespace lumvik
