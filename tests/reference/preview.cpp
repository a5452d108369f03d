#include "reference/preview.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

namespace lumvik::reference {

cv::Mat RenderPreview(const ImageBuffer& rendered, const cv::Mat& mask, float bg_blur) {
  cv::Mat preview;
  rendered.convertTo(preview, CV_8U, 1.0 / 257.0);
  if (mask.empty() || !(bg_blur > 0)) return preview;

  cv::Mat fitted = mask;
  if (mask.size() != preview.size()) cv::resize(mask, fitted, preview.size(), 0, 0, cv::INTER_LINEAR);

  const float strength = bg_blur / 100.0F;
  int k = static_cast<int>(strength * 61.0F);
  k |= 1;
  k = std::max(std::min(k, 61), 3);
  cv::Mat blurred;
  cv::GaussianBlur(preview, blurred, cv::Size(k, k), 0, 0, cv::BORDER_REFLECT_101);

  cv::Mat plane;
  fitted.convertTo(plane, CV_32F, 1.0 / 255.0);
  const cv::Mat planes[] = {plane, plane, plane, plane};
  cv::Mat alpha;
  cv::merge(planes, 4, alpha);
  cv::Mat sharp32;
  cv::Mat blurred32;
  preview.convertTo(sharp32, CV_32F);
  blurred.convertTo(blurred32, CV_32F);
  const cv::Mat result = sharp32.mul(alpha) + blurred32.mul(cv::Scalar(1, 1, 1, 1) - alpha);
  result.convertTo(preview, CV_8U);
  return preview;
}

}  // namespace lumvik::reference
