#include "pipeline/lens_geometry.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "pipeline/working_image.h"

namespace lumvik {
namespace {

constexpr float kDistortionStrength = -0.5F;
constexpr float kAberrationStrength = 0.003F;
constexpr int kRed = 0;
constexpr int kBlue = 2;

void ScalePlane(cv::Mat& working, int color, float factor) {
  cv::Mat plane;
  cv::extractChannel(working, plane, color);
  cv::resize(plane, plane, cv::Size(), static_cast<double>(factor), static_cast<double>(factor),
             cv::INTER_LINEAR);
  cv::insertChannel(FitToSize(plane, working.size()), working, color);
}

}  // namespace

void CorrectDistortion(cv::Mat& working, float amount) {
  if (amount == 0.0F) return;
  const float centre_x = static_cast<float>(working.cols) * 0.5F;
  const float centre_y = static_cast<float>(working.rows) * 0.5F;
  const float radius = std::max(centre_y, centre_x);
  const float k = amount / 100.0F * kDistortionStrength;
  cv::Mat map_x(working.size(), CV_32F);
  cv::Mat map_y(working.size(), CV_32F);
  ForEachRow(working.rows, [&](int y) {
    const float ny = (static_cast<float>(y) - centre_y) / radius;
    auto* to_x = map_x.ptr<float>(y);
    auto* to_y = map_y.ptr<float>(y);
    for (int x = 0; x < working.cols; ++x) {
      const float nx = (static_cast<float>(x) - centre_x) / radius;
      const float factor = (ny * ny + nx * nx) * k + 1.0F;
      to_x[x] = factor * nx * radius + centre_x;
      to_y[x] = factor * ny * radius + centre_y;
    }
  });
  cv::Mat corrected;
  cv::remap(working, corrected, map_x, map_y, cv::INTER_LINEAR, cv::BORDER_REFLECT);
  working = std::move(corrected);
}

void CorrectChromaticAberration(cv::Mat& working, float amount) {
  if (!(amount > 0.0F)) return;
  const float strength = amount / 100.0F * kAberrationStrength;
  ScalePlane(working, kRed, 1.0F + strength);
  ScalePlane(working, kBlue, 1.0F - strength);
}

cv::Mat FitToSize(const cv::Mat& plane, cv::Size size) {
  if (plane.size() == size) return plane;
  const int dx = (plane.cols - size.width) / 2;
  const int dy = (plane.rows - size.height) / 2;
  // Compared by size: dx and dy are 0 for a plane that is one pixel too small.
  if (plane.cols >= size.width && plane.rows >= size.height) return plane(cv::Rect({dx, dy}, size)).clone();
  cv::Mat padded = cv::Mat::zeros(size, plane.type());
  const cv::Size shared(std::min(size.width, plane.cols), std::min(size.height, plane.rows));
  plane(cv::Rect({0, 0}, shared)).copyTo(padded(cv::Rect({std::max(-dx, 0), std::max(-dy, 0)}, shared)));
  return padded;
}

}  // namespace lumvik
