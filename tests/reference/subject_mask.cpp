#include "reference/subject_mask.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

namespace lumvik::reference {

cv::Mat SegmentationImage(const ImageBuffer& image) {
  cv::Mat rgba;
  image.convertTo(rgba, CV_8U, 1.0 / 257.0);
  cv::Mat bgr;
  cv::cvtColor(rgba, bgr, cv::COLOR_RGBA2BGR);
  if (bgr.cols > 512 || bgr.rows > 512) {
    const float scale = 512.0F / static_cast<float>(std::max(bgr.cols, bgr.rows));
    cv::resize(bgr, bgr, cv::Size(), scale, scale, cv::INTER_AREA);
  }
  return bgr;
}

cv::Mat SubjectMask(const ImageBuffer& image, const cv::Rect& rectangle) {
  const cv::Mat bgr = SegmentationImage(image);
  cv::Mat labels = cv::Mat::zeros(bgr.rows, bgr.cols, CV_8UC1);
  cv::Mat background;
  cv::Mat foreground;
  cv::grabCut(bgr, labels, rectangle, background, foreground, 5, cv::GC_INIT_WITH_RECT);
  cv::Mat mask = (labels == cv::GC_FGD) | (labels == cv::GC_PR_FGD);
  mask.convertTo(mask, mask.type(), 255);
  cv::GaussianBlur(mask, mask, cv::Size(5, 5), 0, 0);
  cv::threshold(mask, mask, 127, 255, cv::THRESH_BINARY);
  const cv::Mat ellipse = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(5, 5));
  cv::morphologyEx(mask, mask, cv::MORPH_CLOSE, ellipse);
  cv::morphologyEx(mask, mask, cv::MORPH_OPEN, ellipse);
  if (bgr.size() != image.size()) {
    cv::resize(mask, mask, image.size(), 0, 0, cv::INTER_LINEAR);
    cv::threshold(mask, mask, 127, 255, cv::THRESH_BINARY);
  }
  cv::Mat soft;
  cv::GaussianBlur(mask, soft, cv::Size(9, 9), 2.0, 0);
  return soft;
}

}  // namespace lumvik::reference
