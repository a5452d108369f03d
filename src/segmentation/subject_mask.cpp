#include "segmentation/subject_mask.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

namespace lumvik {
namespace {

constexpr int kMaxWorkingSide = 512;  // GrabCut takes seconds per megapixel
constexpr int kIterations = 5;
constexpr double kSubject = 255;
constexpr double kThreshold = 127;

// The center of the rectangle along an axis of `length` pixels.
int CenterOf(int length, float fraction) {
  if (!(fraction >= 0)) return length / 2;
  // Beyond 1.3 the rectangle is empty anyway; the bound keeps the product within the range of int.
  constexpr float kFarOutside = 4.0F;
  return static_cast<int>(static_cast<float>(length) * std::min(fraction, kFarOutside));
}

// 8-bit BGR of at most kMaxWorkingSide.
cv::Mat WorkingImage(const ImageBuffer& image) {
  cv::Mat bgr = ToBgr8(image);
  const int long_side = std::max(bgr.cols, bgr.rows);
  if (long_side > kMaxWorkingSide) {
    ShrinkImage(bgr, static_cast<float>(kMaxWorkingSide) / static_cast<float>(long_side));
  }
  return bgr;
}

// GrabCut's label of each pixel; empty if it fails, as for an empty rectangle.
cv::Mat Labels(const cv::Mat& bgr, const cv::Rect& rectangle) try {
  cv::Mat labels = cv::Mat::zeros(bgr.size(), CV_8U);
  cv::Mat background_model;
  cv::Mat foreground_model;
  cv::grabCut(bgr, labels, rectangle, background_model, foreground_model, kIterations, cv::GC_INIT_WITH_RECT);
  return labels;
} catch (...) {
  return {};
}

void Binarize(cv::Mat& mask) {
  cv::threshold(mask, mask, kThreshold, kSubject, cv::THRESH_BINARY);
}

// 255 or 0, with a smooth outline and without holes and specks.
cv::Mat CleanMask(const cv::Mat& labels) {
  cv::Mat mask = (labels == cv::GC_FGD) | (labels == cv::GC_PR_FGD);
  cv::GaussianBlur(mask, mask, cv::Size(5, 5), 0);
  Binarize(mask);
  const cv::Mat ellipse = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(5, 5));
  cv::morphologyEx(mask, mask, cv::MORPH_CLOSE, ellipse);
  cv::morphologyEx(mask, mask, cv::MORPH_OPEN, ellipse);
  return mask;
}

cv::Mat Feathered(const cv::Mat& mask) {
  cv::Mat soft;
  cv::GaussianBlur(mask, soft, cv::Size(9, 9), 2.0);
  return soft;
}

}  // namespace

cv::Rect SubjectRectangle(cv::Size image, float subject_x, float subject_y) {
  const int x = std::max(CenterOf(image.width, subject_x) - 3 * image.width / 10, 1);
  const int y = std::max(CenterOf(image.height, subject_y) - 3 * image.height / 10, 1);
  return {x, y, std::min(image.width - x - 1, 3 * image.width / 5),
          std::min(image.height - y - 1, 3 * image.height / 5)};
}

bool SegmentSubject(const ImageBuffer& image, float subject_x, float subject_y, cv::Mat& mask) {
  const cv::Mat bgr = WorkingImage(image);
  const cv::Mat labels = Labels(bgr, SubjectRectangle(bgr.size(), subject_x, subject_y));
  if (labels.empty()) return false;
  cv::Mat found = CleanMask(labels);
  if (found.size() != image.size()) {
    cv::resize(found, found, image.size(), 0, 0, cv::INTER_LINEAR);
    Binarize(found);
  }
  mask = Feathered(found);
  return true;
}

}  // namespace lumvik
