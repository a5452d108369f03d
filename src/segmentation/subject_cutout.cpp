#include "segmentation/subject_cutout.h"

#include <opencv2/imgproc.hpp>

namespace lumvik {

cv::Mat SubjectCutout(const ImageBuffer& rendered, const cv::Mat& mask) {
  cv::Mat image = ToRgba8(rendered);
  cv::insertChannel(mask, image, 3);
  cv::cvtColor(image, image, cv::COLOR_RGBA2BGRA);
  return image;
}

}  // namespace lumvik
