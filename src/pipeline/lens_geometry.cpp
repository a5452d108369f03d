#include "pipeline/lens_geometry.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "image/large_image.h"
#include "image/vectorized.h"

namespace lumvik {
namespace {

constexpr float kDistortionStrength = -0.5F;
constexpr float kAberrationStrength = 0.003F;
constexpr int kRed = 0;
constexpr int kBlue = 2;

// So many rows are mapped at a time: the maps stay in the cache.
constexpr int kStripe = 16;

struct Lens {
  Lens(cv::Size frame, float strength)
      : centre_x(static_cast<float>(frame.width) * 0.5F),
        centre_y(static_cast<float>(frame.height) * 0.5F),
        radius(std::max(centre_y, centre_x)),
        k(strength) {}

  float centre_x;
  float centre_y;
  float radius;
  float k;
};

// Where the pixels of row y come from.
void MapRow(Lens lens, int y, int columns, float* __restrict to_x, float* __restrict to_y) {
  const float ny = (static_cast<float>(y) - lens.centre_y) / lens.radius;
  for (int x = 0; x < columns; ++x) {
    const float nx = (static_cast<float>(x) - lens.centre_x) / lens.radius;
    const float factor = (ny * ny + nx * nx) * lens.k + 1.0F;
    to_x[x] = factor * nx * lens.radius + lens.centre_x;
    to_y[x] = factor * ny * lens.radius + lens.centre_y;
  }
}

void ScalePlane(cv::Mat& working, int color, float factor) {
  cv::Mat plane = LargeImage(working.size(), CV_32F);
  cv::extractChannel(working, plane, color);
  const auto scale = static_cast<double>(factor);
  cv::Mat scaled = LargeImage({cvRound(plane.cols * scale), cvRound(plane.rows * scale)}, CV_32F);
  cv::resize(plane, scaled, cv::Size(), scale, scale, cv::INTER_LINEAR);
  cv::insertChannel(FitToSize(scaled, working.size()), working, color);
}

}  // namespace

void CorrectDistortion(cv::Mat& working, float amount) {
  if (amount == 0.0F) return;
  const Lens lens(working.size(), amount / 100.0F * kDistortionStrength);
  cv::Mat corrected = LargeImage(working.size(), CV_32FC4);
  cv::parallel_for_(cv::Range(0, (working.rows + kStripe - 1) / kStripe), [&](const cv::Range& stripes) {
    for (int i = stripes.start; i < stripes.end; ++i) {
      const cv::Range rows(i * kStripe, std::min((i + 1) * kStripe, working.rows));
      cv::Mat map_x(rows.size(), working.cols, CV_32F);
      cv::Mat map_y(rows.size(), working.cols, CV_32F);
      for (int y = rows.start; y < rows.end; ++y) {
        auto* to_x = map_x.ptr<float>(y - rows.start);
        auto* to_y = map_y.ptr<float>(y - rows.start);
        Vectorized([&] { MapRow(lens, y, working.cols, to_x, to_y); });
      }
      cv::Mat stripe = corrected.rowRange(rows);
      cv::remap(working, stripe, map_x, map_y, cv::INTER_LINEAR, cv::BORDER_REFLECT);
    }
  });
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
  if (plane.cols >= size.width && plane.rows >= size.height) return plane(cv::Rect({dx, dy}, size));
  cv::Mat padded = cv::Mat::zeros(size, plane.type());
  const cv::Size shared(std::min(size.width, plane.cols), std::min(size.height, plane.rows));
  plane(cv::Rect({0, 0}, shared)).copyTo(padded(cv::Rect({std::max(-dx, 0), std::max(-dy, 0)}, shared)));
  return padded;
}

}  // namespace lumvik
