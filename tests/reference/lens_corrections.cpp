#include "reference/lens_corrections.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "reference/clamp.h"
#include "reference/hsl_color.h"

namespace lumvik::reference {
namespace {

void CorrectDistortion(cv::Mat& working, float distortion) {
  const float cx = static_cast<float>(working.cols) * 0.5F;
  const float cy = static_cast<float>(working.rows) * 0.5F;
  const float radius = std::max(cy, cx);
  const float k = distortion / 100.0F * -0.5F;
  cv::Mat x_map(working.size(), CV_32F);
  cv::Mat y_map(working.size(), CV_32F);
  for (int y = 0; y < working.rows; ++y) {
    for (int x = 0; x < working.cols; ++x) {
      const float nx = (static_cast<float>(x) - cx) / radius;
      const float ny = (static_cast<float>(y) - cy) / radius;
      const float f = (ny * ny + nx * nx) * k + 1.0F;
      x_map.at<float>(y, x) = f * nx * radius + cx;
      y_map.at<float>(y, x) = f * ny * radius + cy;
    }
  }
  cv::Mat corrected;
  cv::remap(working, corrected, x_map, y_map, cv::INTER_LINEAR, cv::BORDER_REFLECT, cv::Scalar());
  working = corrected;
}

// Crops a plane about its center if it is at least as large in both directions; otherwise centers it on
// zeros.
void FitToSize(cv::Mat& plane, cv::Size size) {
  if (plane.size() == size) return;
  const int dx = (plane.cols - size.width) / 2;
  const int dy = (plane.rows - size.height) / 2;
  // Compares sizes, not offsets: those are 0 for a plane that is one pixel smaller.
  if (plane.cols >= size.width && plane.rows >= size.height) {
    plane = plane(cv::Rect(dx, dy, size.width, size.height)).clone();
    return;
  }
  cv::Mat padded = cv::Mat::zeros(size, plane.type());
  plane.copyTo(
      padded(cv::Rect(-dx, -dy, std::min(size.width, plane.cols), std::min(size.height, plane.rows))));
  plane = padded;
}

void ResizeAboutCenter(cv::Mat& plane, float factor) {
  const cv::Size size = plane.size();
  cv::Mat resized;
  cv::resize(plane, resized, cv::Size(0, 0), factor, factor, cv::INTER_LINEAR);
  FitToSize(resized, size);
  plane = resized;
}

void CorrectChromaticAberration(cv::Mat& working, float ca_correction) {
  const float s = ca_correction / 100.0F * 0.003F;
  std::vector<cv::Mat> planes;
  cv::split(working, planes);
  ResizeAboutCenter(planes[0], 1.0F + s);
  ResizeAboutCenter(planes[2], 1.0F - s);
  cv::merge(planes, working);
}

void CorrectVignetting(cv::Mat& working, float lens_vignette) {
  const float cx = static_cast<float>(working.cols) * 0.5F;
  const float cy = static_cast<float>(working.rows) * 0.5F;
  const float half_diagonal = std::sqrt(cy * cy + cx * cx);
  const float v = lens_vignette / 100.0F;
  for (int y = 0; y < working.rows; ++y) {
    auto* row = working.ptr<cv::Vec4f>(y);
    for (int x = 0; x < working.cols; ++x) {
      const float dx = static_cast<float>(x) - cx;
      const float dy = static_cast<float>(y) - cy;
      const float d = std::sqrt(dx * dx + dy * dy) / half_diagonal;
      const float gain = 1.0F + 0.5F * v * (d * d);
      for (int c = 0; c < 3; ++c) row[x][c] = ClampUnit(row[x][c] * gain);
    }
  }
}

// Purple or green.
bool IsFringeHue(float h) {
  return (0.65F < h && h < 0.85F) || (0.25F < h && h < 0.4F);
}

void Defringe(cv::Mat& working, float defringe) {
  const float saturation_limit = (1.0F - defringe / 100.0F) * 0.5F;
  const float damping = 1.0F - defringe / 100.0F * 0.5F;
  for (int y = 0; y < working.rows; ++y) {
    auto* row = working.ptr<cv::Vec4f>(y);
    for (int x = 0; x < working.cols; ++x) {
      cv::Vec4f& pixel = row[x];
      const Hsl hsl = rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
      if (!IsFringeHue(hsl.h) || !(hsl.s > saturation_limit)) continue;
      const Rgb rgb = hsl_to_rgb(hsl.h, hsl.s * damping, hsl.l);
      pixel[0] = rgb.r;
      pixel[1] = rgb.g;
      pixel[2] = rgb.b;
    }
  }
}

}  // namespace

void LensCorrections(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.distortion == 0 && adjustments.ca_correction <= 0 && adjustments.lens_vignette <= 0 &&
      adjustments.defringe <= 0) {
    return;
  }
  if (adjustments.distortion != 0) CorrectDistortion(working, adjustments.distortion);
  if (adjustments.ca_correction > 0) CorrectChromaticAberration(working, adjustments.ca_correction);
  if (adjustments.lens_vignette > 0) CorrectVignetting(working, adjustments.lens_vignette);
  if (adjustments.defringe > 0) Defringe(working, adjustments.defringe);
}

}  // namespace lumvik::reference
