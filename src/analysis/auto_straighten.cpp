#include "analysis/auto_straighten.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "analysis/arc_tangent.h"
#include "analysis/reduced_copy.h"

namespace lumvik {
namespace {

constexpr int kLinesWidth = 800;
constexpr float kPi = 3.1415927F;

// Image rows grow downward: a segment that rises to the right has a negative angle.
float AngleOf(float dx, float dy) {
  float angle = ArcTangent(dy, dx) * 180.0F / kPi;
  while (angle > 90.0F) angle -= 180.0F;
  while (angle < -90.0F) angle += 180.0F;
  return angle;
}

std::vector<cv::Vec4i> FindSegments(const ImageBuffer& image) {
  constexpr double kAngleStep = static_cast<float>(CV_PI / 180);
  constexpr int kMinVotes = 50;
  constexpr double kMinLength = 50;
  constexpr double kMaxGap = 10;
  cv::Mat plane;
  WeightedLuminance(ToRgbaFloat(image)).convertTo(plane, CV_8U, 255);
  cv::GaussianBlur(plane, plane, cv::Size(5, 5), 0);
  cv::Canny(plane, plane, 50, 150);
  std::vector<cv::Vec4i> segments;
  cv::HoughLinesP(plane, segments, 1, kAngleStep, kMinVotes, kMinLength, kMaxGap);
  return segments;
}

}  // namespace

float LeanOf(const std::vector<cv::Vec4i>& segments) {
  constexpr float kMaxAngle = 30;
  constexpr float kMinLength = 20;
  constexpr float kMaxLean = 45;
  float weights = 0;
  float weighted_angles = 0;
  for (const cv::Vec4i& segment : segments) {
    const auto dx = static_cast<float>(segment[2] - segment[0]);
    const auto dy = static_cast<float>(segment[3] - segment[1]);
    const float length = std::sqrt(dx * dx + dy * dy);
    const float angle = AngleOf(dx, dy);
    if (std::fabs(angle) > kMaxAngle || length <= kMinLength) continue;
    weights += length;
    weighted_angles += angle * length;
  }
  // Subtracted from 0 rather than negated, which could give -0.
  return weights > 0 ? 0.0F - std::clamp(weighted_angles / weights, -kMaxLean, kMaxLean) : 0.0F;
}

float AutoStraighten(const ImageBuffer& image) {
  return LeanOf(FindSegments(ReducedCopy(image, kLinesWidth)));
}

}  // namespace lumvik
