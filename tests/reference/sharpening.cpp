#include "reference/sharpening.h"

#include <opencv2/imgproc.hpp>
#include <vector>

#include "reference/clamp.h"

namespace lumvik::reference {

void Sharpening(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.sharpening_amount <= 0) return;
  const double gain = adjustments.sharpening_amount / 150.0F;
  const double sigma = adjustments.sharpening_radius;
  const double threshold = adjustments.sharpening_threshold / 65535.0F;
  std::vector<cv::Mat> planes;
  cv::split(working, planes);
  for (size_t c = 0; c < 3; ++c) {
    cv::Mat& plane = planes[c];
    cv::Mat blurred;
    cv::GaussianBlur(plane, blurred, cv::Size(0, 0), sigma, 0, cv::BORDER_REFLECT_101);
    const cv::Mat detail = plane - blurred;
    cv::Mat magnitude;
    cv::absdiff(detail, cv::Mat::zeros(detail.size(), detail.type()), magnitude);
    cv::Mat mask;
    cv::threshold(magnitude, mask, threshold, 1.0, cv::THRESH_BINARY);
    plane = plane + detail.mul(mask) * gain;
    ClampPlane(plane);
  }
  cv::merge(planes, working);
}

}  // namespace lumvik::reference
