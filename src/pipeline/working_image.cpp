#include "pipeline/working_image.h"

namespace lumvik {

cv::Mat ColorPlane(const cv::Mat& working, int color) {
  cv::Mat plane;
  cv::extractChannel(working, plane, color);
  return plane;
}

}  // namespace lumvik
