#include "base/large_image.h"

namespace lumvik {

// Windows gives large pages only to users who hold a privilege that nobody has by default.
cv::Mat LargeImage(cv::Size size, int type) {
  return {size, type};
}

}  // namespace lumvik
