#include "reference/dehaze.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "reference/clamp.h"

namespace lumvik::reference {
namespace {

constexpr double kPatchFraction = 0.02;
constexpr double kBrightestFraction = 0.001;
constexpr float kAirlightFloor = 0.01F;
constexpr float kStrength = 0.95F;
constexpr double kTransmissionSigma = 5.0;
constexpr double kTransmissionThreshold = 0.1;

// 2 % of the width, odd.
int PatchSize(int columns) {
  return std::max(static_cast<int>(columns * kPatchFraction) | 1, 3);
}

cv::Mat ErodedDarkPlane(const std::vector<cv::Mat>& planes) {
  cv::Mat dark;
  cv::min(planes[0], planes[1], dark);
  cv::min(dark, planes[2], dark);
  const int side = PatchSize(dark.cols);
  cv::Mat eroded;
  cv::erode(dark, eroded, cv::Mat::ones(side, side, CV_8U), cv::Point(-1, -1), 1, cv::BORDER_CONSTANT,
            cv::morphologyDefaultBorderValue());
  return eroded;
}

// The mean of the brightest values.
float Airlight(const cv::Mat& eroded_dark) {
  cv::Mat sorted;
  cv::sort(eroded_dark.reshape(1, 1), sorted, cv::SORT_EVERY_ROW | cv::SORT_DESCENDING);
  const int count = std::max(static_cast<int>(static_cast<double>(sorted.cols) * kBrightestFraction), 1);
  const auto mean = static_cast<float>(cv::mean(sorted.colRange(0, count))[0]);
  return std::max(mean, kAirlightFloor);
}

}  // namespace

void Dehaze(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.dehaze <= 0) return;
  const float d = adjustments.dehaze / 100.0F;
  std::vector<cv::Mat> planes;
  cv::split(working, planes);
  const cv::Mat eroded = ErodedDarkPlane(planes);
  const double airlight = Airlight(eroded);
  cv::Mat transmission = 1.0 - eroded * static_cast<double>(d * kStrength) / airlight;
  cv::GaussianBlur(transmission, transmission, cv::Size(0, 0), kTransmissionSigma, 0, cv::BORDER_REFLECT_101);
  // To zero, not to the threshold: the division then gives infinities or NaN, and the clamp white or black.
  cv::threshold(transmission, transmission, kTransmissionThreshold, kTransmissionThreshold,
                cv::THRESH_TOZERO);
  for (size_t c = 0; c < 3; ++c) {
    planes[c] = (planes[c] - cv::Scalar(airlight)) / transmission + cv::Scalar(airlight);
    ClampPlane(planes[c]);
  }
  cv::merge(planes, working);
}

}  // namespace lumvik::reference
