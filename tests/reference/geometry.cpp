#include "reference/geometry.h"

#include <algorithm>
#include <limits>
#include <opencv2/imgproc.hpp>
#include <vector>

namespace lumvik::reference {
namespace {

constexpr int kMaxRefusedSide = 10;

// Toward zero, saturating; NaN gives 0.
int Truncate(float value) {
  constexpr float kIntLimit = 2147483648.0F;
  if (value >= kIntLimit) return std::numeric_limits<int>::max();
  if (value <= -kIntLimit) return std::numeric_limits<int>::min();
  return value == value ? static_cast<int>(value) : 0;
}

bool IsNeutral(const Adjustments& a) {
  return a.flip_h == 0 && a.flip_v == 0 && a.rotation == 0 && a.perspective_h == 0 && a.perspective_v == 0 &&
         a.crop.x == 0 && a.crop.y == 0 && a.crop.w <= 0 && a.crop.h <= 0;
}

void Rotate(cv::Mat& image, float degrees) {
  const cv::Point2f center(static_cast<float>(image.cols) * 0.5F, static_cast<float>(image.rows) * 0.5F);
  const cv::Mat matrix = cv::getRotationMatrix2D(center, degrees, 1.0);
  cv::Mat rotated;
  cv::warpAffine(image, rotated, matrix, image.size(), cv::INTER_LINEAR, cv::BORDER_REFLECT, cv::Scalar());
  image = rotated;
}

// One transform for both sliders: the first moves the top corners in and the bottom corners out, the second
// the top edge down and the bottom edge up.
void CorrectPerspective(cv::Mat& image, float perspective_h, float perspective_v) {
  const float a = perspective_h / 100.0F * 0.15F;
  const float b = perspective_v / 100.0F * 0.15F;
  const auto w = static_cast<float>(image.cols);
  const auto h = static_cast<float>(image.rows);
  const std::vector<cv::Point2f> from = {{0, 0}, {w, 0}, {w, h}, {0, h}};
  const std::vector<cv::Point2f> to = {
      {w * a, h * b}, {w - w * a, h * b}, {w + w * a, h - h * b}, {-w * a, h - h * b}};
  const cv::Mat matrix = cv::getPerspectiveTransform(from, to, cv::DECOMP_LU);
  cv::Mat warped;
  cv::warpPerspective(image, warped, matrix, image.size(), cv::INTER_LINEAR, cv::BORDER_REFLECT,
                      cv::Scalar());
  image = warped;
}

void Crop(cv::Mat& image, const CropRectangle& crop) {
  if (crop.w <= 0 || crop.h <= 0) return;
  if (crop.x == 0 && crop.y == 0 && crop.w >= 0.99F && crop.h >= 0.99F) return;
  const auto columns = static_cast<float>(image.cols);
  const auto rows = static_cast<float>(image.rows);
  const int x = std::max(Truncate(columns * crop.x), 0);
  const int y = std::max(Truncate(rows * crop.y), 0);
  const int width = std::min(Truncate(columns * crop.w), image.cols - x);
  const int height = std::min(Truncate(rows * crop.h), image.rows - y);
  if (width <= kMaxRefusedSide || height <= kMaxRefusedSide) return;
  image = image(cv::Rect(x, y, width, height)).clone();
}

}  // namespace

void Geometry(cv::Mat& working, const Adjustments& adjustments) {
  if (IsNeutral(adjustments)) return;
  if (adjustments.flip_h != 0) cv::flip(working, working, 1);
  if (adjustments.flip_v != 0) cv::flip(working, working, 0);
  if (adjustments.rotation != 0) Rotate(working, adjustments.rotation);
  if (!(adjustments.perspective_h == 0 && adjustments.perspective_v == 0)) {
    CorrectPerspective(working, adjustments.perspective_h, adjustments.perspective_v);
  }
  Crop(working, adjustments.crop);
}

}  // namespace lumvik::reference
