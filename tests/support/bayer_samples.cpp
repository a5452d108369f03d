#include "support/bayer_samples.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace lumvik::test {
namespace {

constexpr int kMaxCode = std::numeric_limits<uint16_t>::max();
constexpr int kArwWhite = 16383;

int White(const BayerFile& file) {
  return file.format == RawFormat::kDng ? file.white : std::min(file.white, kArwWhite);
}

int Largest(const BayerFile& file) {
  return file.format == RawFormat::kDng ? kMaxCode : kArwWhite;
}

cv::Size SensorSize(const BayerFile& file) {
  const BayerMargins& margins = file.margins;
  return {margins.left + file.size.width + margins.right, margins.top + file.size.height + margins.bottom};
}

// Red, green or blue.
int ColorAt(const BayerFile& file, int column, int row) {
  const size_t place = 2 * static_cast<size_t>(row) + static_cast<size_t>(column & 1);
  return std::min<int>(file.pattern[place % file.pattern.size()], 2);
}

// Linear light of a photograph, 0..1, rows x columns x (red, green, blue).
cv::Mat PhotographedLight(cv::Size size) {
  static const cv::Mat kPhotograph = [] {
    cv::Mat light;
    cv::cvtColor(cv::imread(LUMVIK_TEST_DATA "/cat.jpg"), light, cv::COLOR_BGR2RGB);
    light.convertTo(light, CV_32F, 1.0 / 255);
    cv::pow(light, 2.2, light);
    return light;
  }();
  // Details stay as sharp as a sensor sees them: a small image shows a part.
  constexpr int kDetail = 2;
  const cv::Size part(std::min(size.width * kDetail, kPhotograph.cols),
                      std::min(size.height * kDetail, kPhotograph.rows));
  const cv::Rect center({(kPhotograph.cols - part.width) / 2, (kPhotograph.rows - part.height) / 2}, part);
  cv::Mat light;
  cv::resize(kPhotograph(center), light, size, 0, 0, cv::INTER_AREA);
  return light;
}

cv::Mat GradientLight(cv::Size size) {
  cv::Mat light(size, CV_32FC3);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      const double across = static_cast<double>(x) / size.width;
      const double down = static_cast<double>(y) / size.height;
      const double wave = 0.5 + 0.5 * std::sin(0.05 * x * down + 0.3 * y);
      light.at<cv::Vec3f>(y, x) = cv::Vec3f(static_cast<float>(across), static_cast<float>(wave),
                                            static_cast<float>(1 - (across + down) / 2));
    }
  }
  return light;
}

// Red and blue are recorded weaker than green, as a camera does.
cv::Mat RecordLight(const BayerFile& file, const cv::Mat& light) {
  constexpr double kSensitivity[] = {0.45, 1, 0.625};
  const double black = file.black.front();
  cv::Mat samples(light.size(), CV_16UC1);
  for (int y = 0; y < light.rows; ++y) {
    for (int x = 0; x < light.cols; ++x) {
      const int color = ColorAt(file, x, y);
      const double signal = (White(file) - black) * kSensitivity[color];
      samples.at<uint16_t>(y, x) =
          cv::saturate_cast<uint16_t>(black + signal * light.at<cv::Vec3f>(y, x)[color]);
    }
  }
  return samples;
}

// Evenly distributed codes from `least` to `most`.
cv::Mat NoiseBetween(const BayerFile& file, double least, double most) {
  const int last = Largest(file);
  const int low = std::clamp(static_cast<int>(least), 0, last);
  const int high = std::clamp(static_cast<int>(most), low, last);
  cv::Mat samples(SensorSize(file), CV_16UC1);
  cv::RNG(file.seed).fill(samples, cv::RNG::UNIFORM, low, high + 1);
  return samples;
}

// Neighbors as far apart in color as there are.
cv::Mat Primaries(const BayerFile& file) {
  const int side = 1 + static_cast<int>(file.seed % 4);
  const cv::Size size = SensorSize(file);
  cv::Mat squares(size.height / side + 1, size.width / side + 1, CV_32FC3);
  cv::RNG(file.seed).fill(squares, cv::RNG::UNIFORM, 0, 2);
  cv::Mat samples(size, CV_16UC1);
  for (int y = 0; y < size.height; ++y) {
    for (int x = 0; x < size.width; ++x) {
      const float share = squares.at<cv::Vec3f>(y / side, x / side)[ColorAt(file, x, y)];
      samples.at<uint16_t>(y, x) = cv::saturate_cast<uint16_t>(share < 1 ? file.black.front() : White(file));
    }
  }
  return samples;
}

cv::Mat Checkerboard(const BayerFile& file) {
  const int side = 1 + static_cast<int>(file.seed % 3);
  cv::Mat samples(SensorSize(file), CV_16UC1);
  for (int y = 0; y < samples.rows; ++y) {
    for (int x = 0; x < samples.cols; ++x) {
      const bool white = (x / side + y / side) % 2 == 0;
      samples.at<uint16_t>(y, x) = cv::saturate_cast<uint16_t>(white ? White(file) : file.black.front());
    }
  }
  return samples;
}

cv::Mat HotPixels(const BayerFile& file) {
  constexpr int kPixelsPerHotOne = 60;
  cv::Mat samples(SensorSize(file), CV_16UC1, cv::Scalar(file.black.front() + White(file) / 16.0));
  cv::RNG random(file.seed);
  for (size_t i = 0; i < samples.total() / kPixelsPerHotOne + 1; ++i) {
    const cv::Point at(random.uniform(0, samples.cols), random.uniform(0, samples.rows));
    samples.at<uint16_t>(at) = static_cast<uint16_t>(random.uniform(0, 2) == 0 ? 0 : White(file));
  }
  return samples;
}

}  // namespace

cv::Mat BayerSamples(const BayerFile& file) {
  const double black = file.black.front();
  const double white = White(file);
  switch (file.content) {
    case BayerContent::kPhotograph:
      return RecordLight(file, PhotographedLight(SensorSize(file)));
    case BayerContent::kGradients:
      return RecordLight(file, GradientLight(SensorSize(file)));
    case BayerContent::kNoise:
      return NoiseBetween(file, 0, 1.1 * white);
    case BayerContent::kDimNoise:
      return NoiseBetween(file, 0, white * (0.5 + static_cast<double>(file.seed % 50) / 100));
    case BayerContent::kSixteenBits:
      return NoiseBetween(file, 0, kMaxCode);
    case BayerContent::kPrimaries:
      return Primaries(file);
    case BayerContent::kCheckerboard:
      return Checkerboard(file);
    case BayerContent::kHotPixels:
      return HotPixels(file);
    case BayerContent::kBlack:
      return NoiseBetween(file, black - 3, black + 1);
    case BayerContent::kSaturated:
      return NoiseBetween(file, white, white + 100);
  }
  return {};
}

}  // namespace lumvik::test
