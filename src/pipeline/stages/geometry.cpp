#include "pipeline/stages/geometry.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "base/vectorized.h"
#include "pipeline/bilinear_sampler.h"
#include "pipeline/packed_rows.h"

namespace lumvik {
namespace {

constexpr float kPerspectiveStrength = 0.15F;
constexpr float kWholeFrame = 0.99F;
constexpr int kSmallestSide = 11;

// cv::warpAffine works in 1/1024 of a pixel and rounds the column and the row term of a coordinate
// separately.
constexpr int kFineBits = 10;
constexpr int kFineToPosition = kFineBits - 5;
static_assert(1 << (kFineBits - kFineToPosition) == kPositionsPerPixel);

constexpr int kBlockRows = 16;
constexpr int kBlockPixels = 1024;

// OpenCV turns both terms of a NaN angle into INT_MIN and lets their sum wrap around.
int WrappingSum(int a, int b) {
  return static_cast<int>(static_cast<unsigned>(a) + static_cast<unsigned>(b));
}

// Maps the pixels from x on through the matrix; `first` is the first column of their block.
void LocateProjected(const cv::Matx33d& matrix, int first, int x, int y, int columns, int* __restrict to_x,
                     int* __restrict to_y) {
  constexpr double kScale = kPositionsPerPixel;
  const auto start = [&](int row) { return matrix(row, 0) * first + matrix(row, 1) * y + matrix(row, 2); };
  const double start_x = start(0);
  const double start_y = start(1);
  const double start_w = start(2);
  const double step_x = matrix(0, 0);
  const double step_y = matrix(1, 0);
  const double step_w = matrix(2, 0);
  for (int i = 0; i < columns; ++i) {
    const double in_block = x - first + i;
    const double w = start_w + step_w * in_block;
    const double scale = w != 0 ? kScale / w : 0;
    to_x[i] = NearestPosition((start_x + step_x * in_block) * scale);
    to_y[i] = NearestPosition((start_y + step_y * in_block) * scale);
  }
}

// A fraction of a length, truncated to whole pixels. Far outside the frame, or NaN, stays far outside.
int Pixels(int length, float fraction) {
  constexpr float kFarOutside = 1e9F;
  const float pixels = static_cast<float>(length) * fraction;
  if (!(pixels > -kFarOutside)) return static_cast<int>(-kFarOutside);
  return static_cast<int>(std::min(pixels, kFarOutside));
}

}  // namespace

FrameView Flip(cv::Size frame, bool horizontally, bool vertically) {
  return {{{0, 0}, frame}, horizontally, vertically};
}

FrameTransform Rotation(cv::Size frame, float degrees) {
  const cv::Point2f center(static_cast<float>(frame.width) * 0.5F, static_cast<float>(frame.height) * 0.5F);
  cv::Matx23d forward = cv::getRotationMatrix2D(center, static_cast<double>(degrees), 1.0);
  cv::Matx23d back;
  cv::invertAffineTransform(forward, back);
  constexpr double kFine = 1 << kFineBits;
  std::vector<int> along_x(static_cast<size_t>(frame.width));
  std::vector<int> along_y(along_x.size());
  for (int x = 0; x < frame.width; ++x) {
    along_x[static_cast<size_t>(x)] = cvRound(back(0, 0) * x * kFine);
    along_y[static_cast<size_t>(x)] = cvRound(back(1, 0) * x * kFine);
  }
  return BilinearSampling(frame, [=](const RowPart& part, SamplePositions& positions) {
    constexpr int kHalfPosition = 1 << (kFineToPosition - 1);
    const int row_x = cvRound((back(0, 1) * part.y + back(0, 2)) * kFine) + kHalfPosition;
    const int row_y = cvRound((back(1, 1) * part.y + back(1, 2)) * kFine) + kHalfPosition;
    const int* column_x = along_x.data() + part.x;
    const int* column_y = along_y.data() + part.x;
    Vectorized([&, columns = part.columns] {
      for (int i = 0; i < columns; ++i) {
        positions.x[i] = WrappingSum(row_x, column_x[i]) >> kFineToPosition;
        positions.y[i] = WrappingSum(row_y, column_y[i]) >> kFineToPosition;
      }
    });
  });
}

FrameTransform Perspective(cv::Size frame, float horizontal, float vertical) {
  const auto width = static_cast<float>(frame.width);
  const auto height = static_cast<float>(frame.height);
  const float dx = width * (horizontal / 100.0F * kPerspectiveStrength);
  const float dy = height * (vertical / 100.0F * kPerspectiveStrength);
  const std::vector<cv::Point2f> from = {{0, 0}, {width, 0}, {width, height}, {0, height}};
  const std::vector<cv::Point2f> to = {
      {dx, dy}, {width - dx, dy}, {width + dx, height - dy}, {-dx, height - dy}};
  const cv::Matx33d forward = cv::getPerspectiveTransform(from, to, cv::DECOMP_LU);
  cv::Matx33d back;
  cv::invert(forward, back);
  // cv::warpPerspective evaluates the matrix anew per block of columns, which affects the last bits of a
  // position.
  const int block = std::min(kBlockPixels / std::min(kBlockRows, frame.height), frame.width);
  return BilinearSampling(frame, [back, block](const RowPart& part, SamplePositions& positions) {
    for (int i = 0; i < part.columns;) {
      const int x = part.x + i;
      const int first = x / block * block;
      const int count = std::min(first + block - x, part.columns - i);
      Vectorized([&] { LocateProjected(back, first, x, part.y, count, positions.x + i, positions.y + i); });
      i += count;
    }
  });
}

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

}  // namespace lumvik
