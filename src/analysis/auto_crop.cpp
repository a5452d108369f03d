#include "analysis/auto_crop.h"

#include <algorithm>

#include "analysis/interest_map.h"
#include "analysis/reduced_copy.h"

namespace lumvik {
namespace {

constexpr int kWidth = 512;
constexpr float kAspect = 1.5F;
constexpr float kMargin = 0.02F;

// In single precision 0.8 - 0.05 is 0.74999994, so a scale of 0.75 is never tried.
constexpr float kMaxScale = 1.0F;
constexpr float kMinScale = 0.75F;
constexpr float kScaleStep = 0.05F;

int Truncated(float value) {
  return static_cast<int>(value);
}

cv::Size CandidateSize(cv::Size frame, float aspect, float scale) {
  const auto width = static_cast<float>(frame.width);
  const auto height = static_cast<float>(frame.height);
  if (width / height >= aspect) {
    const int rows = Truncated(height * scale);
    return {std::min(Truncated(static_cast<float>(rows) * aspect), frame.width), rows};
  }
  const int columns = Truncated(width * scale);
  return {columns, std::min(Truncated(static_cast<float>(columns) / aspect), frame.height)};
}

// The mean interest plus small bonuses for interest on the thirds and for size. Single precision drops the
// rounding errors of the sums, so that candidates with the same content have the same score.
float Score(const RectangleSums& interest, const cv::Rect& candidate, float scale) {
  const int area = candidate.area();
  const auto mean = static_cast<float>(interest(candidate) / area);
  const float thirds = thirds_score(interest, candidate) / (static_cast<float>(area) * 0.001F + 1.0F);
  return thirds * 0.05F + mean + scale * scale * 0.2F;
}

}  // namespace

float thirds_score(const RectangleSums& interest, const cv::Rect& candidate) {
  const auto width = static_cast<float>(candidate.width);
  const auto height = static_cast<float>(candidate.height);
  const auto radius = static_cast<float>(Truncated(std::min(width, height) * 0.04F + 0.5F));
  const cv::Size plane = interest.PlaneSize();
  double total = 0;
  for (const float row : {1.0F, 2.0F}) {
    for (const float column : {1.0F, 2.0F}) {
      const float x = static_cast<float>(candidate.x) + column * width / 3.0F;
      const float y = static_cast<float>(candidate.y) + row * height / 3.0F;
      const cv::Point first(std::max(Truncated(x - radius), 0), std::max(Truncated(y - radius), 0));
      const cv::Point last(std::min(Truncated(x + radius), plane.width - 1),
                           std::min(Truncated(y + radius), plane.height - 1));
      if (first.x < last.x && first.y < last.y) total += interest(cv::Rect(first, last));
    }
  }
  return static_cast<float>(total);
}

CropRectangle BestCrop(const cv::Mat& interest, float aspect, float margin) {
  const RectangleSums sums(interest);
  const cv::Size frame = interest.size();
  const auto width = static_cast<float>(frame.width);
  const auto height = static_cast<float>(frame.height);
  const int left = Truncated(width * margin);
  const int top = Truncated(height * margin);
  CropRectangle best = {0, 0, 1, 1};
  float best_score = -1e9F;
  float scale = kMaxScale;
  while (scale >= kMinScale) {
    const cv::Size size = CandidateSize(frame, aspect, scale);
    const int step = std::max(Truncated(static_cast<float>(std::min(size.width, size.height)) * 0.05F), 1);
    for (int y = top; y + size.height + top <= frame.height; y += step) {
      for (int x = left; x + size.width + left <= frame.width; x += step) {
        const float score = Score(sums, cv::Rect(cv::Point(x, y), size), scale);
        if (!(score > best_score)) continue;
        best_score = score;
        best = {static_cast<float>(x) / width, static_cast<float>(y) / height,
                static_cast<float>(size.width) / width, static_cast<float>(size.height) / height};
      }
    }
    scale -= kScaleStep;
  }
  return best;
}

CropRectangle find_crop(const cv::Mat& image, float aspect, float margin) {
  constexpr float kMinAspect = 0.01F;
  if (image.empty()) return {0, 0, 1, 1};
  return BestCrop(InterestMap(image), aspect > kMinAspect ? aspect : kAspect, margin);
}

CropRectangle AutoCrop(const ImageBuffer& image) {
  return find_crop(ToRgbaFloat(ReducedCopy(image, kWidth)), kAspect, kMargin);
}

}  // namespace lumvik
