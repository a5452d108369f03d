#include "pipeline/geometry.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "image/large_image.h"

namespace lumvik {
namespace {

constexpr float kPerspectiveStrength = 0.15F;
constexpr float kWholeFrame = 0.99F;
constexpr int kSmallestSide = 11;

void Rotate(cv::Mat& working, float degrees) {
  const cv::Point2f centre(static_cast<float>(working.cols) * 0.5F, static_cast<float>(working.rows) * 0.5F);
  const cv::Mat matrix = cv::getRotationMatrix2D(centre, static_cast<double>(degrees), 1.0);
  cv::Mat rotated = LargeImage(working.size(), working.type());
  cv::warpAffine(working, rotated, matrix, working.size(), cv::INTER_LINEAR, cv::BORDER_REFLECT);
  working = std::move(rotated);
}

// `horizontal` narrows the top and widens the bottom, `vertical` brings both edges in; one transform for
// both.
void CorrectPerspective(cv::Mat& working, float horizontal, float vertical) {
  const auto width = static_cast<float>(working.cols);
  const auto height = static_cast<float>(working.rows);
  const float dx = width * (horizontal / 100.0F * kPerspectiveStrength);
  const float dy = height * (vertical / 100.0F * kPerspectiveStrength);
  const std::vector<cv::Point2f> from = {{0, 0}, {width, 0}, {width, height}, {0, height}};
  const std::vector<cv::Point2f> to = {
      {dx, dy}, {width - dx, dy}, {width + dx, height - dy}, {-dx, height - dy}};
  const cv::Mat matrix = cv::getPerspectiveTransform(from, to, cv::DECOMP_LU);
  cv::Mat warped = LargeImage(working.size(), working.type());
  cv::warpPerspective(working, warped, matrix, working.size(), cv::INTER_LINEAR, cv::BORDER_REFLECT);
  working = std::move(warped);
}

// A fraction of a length in whole pixels, cut off; far outside the frame, or no number, stays far outside.
int Pixels(int length, float fraction) {
  constexpr float kFarOutside = 1e9F;
  const float pixels = static_cast<float>(length) * fraction;
  if (!(pixels > -kFarOutside)) return static_cast<int>(-kFarOutside);
  return static_cast<int>(std::min(pixels, kFarOutside));
}

}  // namespace

cv::Rect CropArea(const CropRectangle& crop, cv::Size frame) {
  const cv::Rect whole({0, 0}, frame);
  if (crop.w <= 0.0F || crop.h <= 0.0F) return whole;
  if (crop.x == 0.0F && crop.y == 0.0F && crop.w >= kWholeFrame && crop.h >= kWholeFrame) return whole;
  const int x = std::max(Pixels(frame.width, crop.x), 0);
  const int y = std::max(Pixels(frame.height, crop.y), 0);
  const int width = std::min(Pixels(frame.width, crop.w), frame.width - x);
  const int height = std::min(Pixels(frame.height, crop.h), frame.height - y);
  return width < kSmallestSide || height < kSmallestSide ? whole : cv::Rect(x, y, width, height);
}

void Geometry(cv::Mat& working, const Adjustments& adjustments) {
  if (adjustments.flip_h != 0) cv::flip(working, working, 1);
  if (adjustments.flip_v != 0) cv::flip(working, working, 0);
  if (adjustments.rotation != 0.0F) Rotate(working, adjustments.rotation);
  if (adjustments.perspective_h != 0.0F || adjustments.perspective_v != 0.0F) {
    CorrectPerspective(working, adjustments.perspective_h, adjustments.perspective_v);
  }
  const cv::Rect area = CropArea(adjustments.crop, working.size());
  if (area.size() != working.size()) working = working(area).clone();
}

}  // namespace lumvik
