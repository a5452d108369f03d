#include "image/image_buffer.h"

#include <algorithm>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <stdexcept>

#include "base/code_scale.h"
#include "base/large_image.h"
#include "base/vectorized.h"

namespace lumvik {
namespace {

constexpr double kWiden8To16 = 257.0;

cv::Mat Widened(const cv::Mat& image) {
  cv::Mat wide;
  image.convertTo(wide, CV_16U, kWiden8To16);
  return wide;
}

// value / 257, rounded to nearest; ties cannot occur. With t = value + 128 that is (t - t / 256) / 256.
// Avoiding sums that overflow 16 bits, it takes half as long as OpenCV's conversion through float.
uint8_t Narrowed(uint16_t value) {
  const int t_high = ((value >> 1) + 64) >> 7;
  const auto quotient = static_cast<uint16_t>(value - t_high + 128);
  return static_cast<uint8_t>(quotient >> 8);
}

void NarrowRow(const uint16_t* rgba16, int columns, uint8_t* __restrict rgba) {
  for (int i = 0; i < 4 * columns; ++i) rgba[i] = Narrowed(rgba16[i]);
}

void NarrowRowToBgr(const uint16_t* rgba16, int columns, uint8_t* __restrict bgr) {
  for (int x = 0; x < columns; ++x) {
    bgr[3 * x] = Narrowed(rgba16[4 * x + 2]);
    bgr[3 * x + 1] = Narrowed(rgba16[4 * x + 1]);
    bgr[3 * x + 2] = Narrowed(rgba16[4 * x]);
  }
}

// On all threads and without allocating: a preview must not fail once its render has succeeded.
template <void (*narrow)(const uint16_t*, int, uint8_t*)>
void NarrowRows(const ImageBuffer& image, cv::Mat& narrowed) {
  cv::parallel_for_(cv::Range(0, image.rows), [&](const cv::Range& range) {
    Vectorized([&] {
      for (int y = range.start; y < range.end; ++y)
        narrow(image.ptr<uint16_t>(y), image.cols, narrowed.ptr(y));
    });
  });
}

// OpenCV sets the new alpha of a 16-bit image to full scale.
cv::Mat WithOpaqueAlpha(const cv::Mat& rgb16) {
  cv::Mat rgba;
  cv::cvtColor(rgb16, rgba, cv::COLOR_RGB2RGBA);
  return rgba;
}

}  // namespace

ImageBuffer ToImageBuffer(const cv::Mat& image) {
  if (image.empty()) return {};
  switch (image.type()) {
    case CV_16UC4:
      return image.clone();
    case CV_16UC3:
      return WithOpaqueAlpha(image);
    case CV_8UC3:
      return WithOpaqueAlpha(Widened(image));
    case CV_8UC4:
      return Widened(image);
    default:
      throw std::invalid_argument("ImageBuffer: unsupported cv::Mat type");
  }
}

ImageBuffer ResizedImageBuffer(const cv::Mat& image, int width, int height, int interpolation) {
  cv::Mat resized;
  cv::resize(image, resized, cv::Size(width, height), 0, 0, interpolation);
  return ToImageBuffer(resized);
}

void ToRgba8(const ImageBuffer& image, cv::Mat& rgba) {
  rgba.create(image.size(), CV_8UC4);
  NarrowRows<NarrowRow>(image, rgba);
}

cv::Mat ToRgba8(const ImageBuffer& image) {
  cv::Mat rgba;
  ToRgba8(image, rgba);
  return rgba;
}

cv::Mat ToBgr8(const ImageBuffer& image) {
  cv::Mat bgr = LargeImage(image.size(), CV_8UC3);
  NarrowRows<NarrowRowToBgr>(image, bgr);
  return bgr;
}

cv::Mat ToRgbaFloat(const ImageBuffer& image) {
  cv::Mat rgba;
  image.convertTo(rgba, CV_32F, kExactUnitPerCode);
  return rgba;
}

cv::Mat ToRgb16(const ImageBuffer& image) {
  cv::Mat rgb;
  if (!image.empty()) cv::cvtColor(image, rgb, cv::COLOR_RGBA2RGB);
  return rgb;
}

void AssignImage(ImageBuffer& destination, const ImageBuffer& source) {
  cv::Mat copy = source.empty() ? cv::Mat() : LargeImage(source.size(), source.type());
  source.copyTo(copy);
  destination = copy;
}

void ShrinkImage(cv::Mat& image, float factor) {
  const double scale = factor;
  const bool too_thin = cvRound(std::min(image.cols, image.rows) * scale) < 1;
  const cv::Size at_least_one_pixel(std::max(cvRound(image.cols * scale), 1),
                                    std::max(cvRound(image.rows * scale), 1));
  cv::resize(image, image, too_thin ? at_least_one_pixel : cv::Size(), scale, scale, cv::INTER_AREA);
}

}  // namespace lumvik
