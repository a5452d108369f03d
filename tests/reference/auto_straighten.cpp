#include "reference/auto_straighten.h"

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "analysis/arc_tangent.h"
#include "reference/clamp.h"
#include "reference/reduced_copy.h"

namespace lumvik::reference {

float Vote(const std::vector<cv::Vec4i>& segments) {
  float weight_sum = 0;
  float weighted_sum = 0;
  for (const cv::Vec4i& s : segments) {
    const auto dx = static_cast<float>(s[2] - s[0]);
    const auto dy = static_cast<float>(s[3] - s[1]);
    const float length = sqrtf(dx * dx + dy * dy);
    float angle = ArcTangent(dy, dx) * 180.0F / 3.1415927F;
    while (angle > 90.0F) angle -= 180.0F;
    while (angle < -90.0F) angle += 180.0F;
    if (fabsf(angle) <= 30.0F && length > 20.0F) {
      weight_sum += length;
      weighted_sum += angle * length;
    }
  }
  if (!(weight_sum > 0)) return 0;
  return -Clamp(weighted_sum / weight_sum, -45.0F, 45.0F);
}

float AutoStraighten(const cv::Mat& image) {
  cv::Mat gray;
  WeightedLuminance(ReducedFloatCopy(image, 800)).convertTo(gray, CV_8U, 255);
  cv::Mat smooth;
  cv::GaussianBlur(gray, smooth, cv::Size(5, 5), 0, 0, cv::BORDER_DEFAULT);
  cv::Mat edges;
  cv::Canny(smooth, edges, 50, 150, 3, false);
  std::vector<cv::Vec4i> segments;
  cv::HoughLinesP(edges, segments, 1, 0.01745329238474369, 50, 50, 10);
  return Vote(segments);
}

}  // namespace lumvik::reference
