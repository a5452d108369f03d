#include "support/test_images.h"

#include <cstring>
#include <map>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <stdexcept>

#include "image/image_buffer.h"

namespace lumvik::test {

cv::Mat NoiseImage(cv::Size size, uint64_t seed) {
  cv::Mat image(size, CV_16UC4);
  cv::RNG(seed).fill(image, cv::RNG::UNIFORM, 0, 65536);
  return image;
}

cv::Mat WorkingNoise(cv::Size size) {
  cv::Mat working;
  NoiseImage(size, 4).convertTo(working, CV_32FC4, 1.0 / 65535);
  return working;
}

cv::Mat NoisePlane(cv::Size size, uint64_t seed) {
  cv::Mat plane(size, CV_32F);
  cv::RNG(seed).fill(plane, cv::RNG::UNIFORM, 0, 1);
  return plane;
}

namespace {

// Decoded on first use.
const cv::Mat& FullPhotograph(const std::string& name) {
  static std::map<std::string, cv::Mat> decoded;
  cv::Mat& image = decoded[name];
  if (!image.empty()) return image;
  const std::string path = kTestData + name;
  const cv::Mat bgr = cv::imread(path);
  if (bgr.empty()) throw std::runtime_error("cannot read " + path);
  cv::Mat rgb;
  cv::cvtColor(bgr, rgb, cv::COLOR_BGR2RGB);
  image = ToImageBuffer(rgb);
  return image;
}

}  // namespace

cv::Mat Photograph(const std::string& name, int width) {
  const cv::Mat& full = FullPhotograph(name);
  return ResizedPhotograph(name, cv::Size(width, width * full.rows / full.cols));
}

cv::Mat ResizedPhotograph(const std::string& name, cv::Size size) {
  return ResizedImageBuffer(FullPhotograph(name), size.width, size.height, cv::INTER_AREA);
}

const std::vector<cv::Size>& OddSizes() {
  static const std::vector<cv::Size> kSizes = {{1, 1},  {2, 1},  {1, 17}, {17, 1}, {3, 3},  {13, 7},  {15, 4},
                                               {16, 4}, {31, 2}, {33, 5}, {64, 3}, {65, 9}, {257, 11}};
  return kSizes;
}

Difference Compare(const cv::Mat& a, const cv::Mat& b, int tolerance) {
  CV_Assert(a.type() == b.type() && a.size() == b.size() && a.depth() == CV_16U);
  cv::Mat difference;
  cv::absdiff(a.reshape(1), b.reshape(1), difference);
  double largest = 0;
  cv::minMaxLoc(difference, nullptr, &largest);
  const int above = cv::countNonZero(difference > tolerance);
  return {static_cast<int>(largest), static_cast<double>(above) / static_cast<double>(difference.total())};
}

bool SameBytes(const cv::Mat& a, const cv::Mat& b) {
  if (a.type() != b.type() || a.size() != b.size()) return false;
  const size_t row_bytes = a.elemSize() * static_cast<size_t>(a.cols);
  for (int y = 0; y < a.rows; ++y) {
    if (std::memcmp(a.ptr(y), b.ptr(y), row_bytes) != 0) return false;
  }
  return true;
}

}  // namespace lumvik::test
