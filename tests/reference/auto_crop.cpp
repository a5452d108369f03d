#include "reference/auto_crop.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "reference/reduced_copy.h"

namespace lumvik::reference {
namespace {

double Sum(const cv::Mat& plane, const cv::Rect& rectangle) {
  return cv::sum(plane(rectangle))[0];
}

}  // namespace

cv::Mat SpectralSaliency(const cv::Mat& luminance) {
  cv::Mat small;
  cv::resize(luminance, small, cv::Size(64, 64), 0, 0, cv::INTER_LINEAR);
  cv::Mat spectrum;
  cv::merge(std::vector<cv::Mat>{small, cv::Mat::zeros(small.size(), CV_32F)}, spectrum);
  cv::dft(spectrum, spectrum, 0);
  std::vector<cv::Mat> parts;
  cv::split(spectrum, parts);
  cv::Mat amplitude;
  cv::magnitude(parts[0], parts[1], amplitude);
  cv::Mat log_amplitude;
  cv::log(amplitude + cv::Scalar(1e-8F), log_amplitude);
  cv::Mat smooth;
  cv::blur(log_amplitude, smooth, cv::Size(3, 3), cv::Point(-1, -1), cv::BORDER_REFLECT_101);
  cv::Mat gain;
  cv::exp(log_amplitude - smooth, gain);
  cv::Mat angle;
  cv::phase(parts[0], parts[1], angle, false);
  for (int y = 0; y < angle.rows; ++y) {
    for (int x = 0; x < angle.cols; ++x) {
      parts[0].at<float>(y, x) = cosf(angle.at<float>(y, x)) * gain.at<float>(y, x);
      parts[1].at<float>(y, x) = sinf(angle.at<float>(y, x)) * gain.at<float>(y, x);
    }
  }
  cv::merge(parts, spectrum);
  cv::idft(spectrum, spectrum, cv::DFT_SCALE);
  cv::split(spectrum, parts);
  cv::Mat saliency;
  cv::pow(parts[0], 2, saliency);
  cv::GaussianBlur(saliency, saliency, cv::Size(0, 0), 8, 0, cv::BORDER_REFLECT_101);
  cv::normalize(saliency, saliency, 0, 1, cv::NORM_MINMAX);
  return saliency;
}

cv::Mat EdgeStrength(const cv::Mat& luminance) {
  cv::Mat across;
  cv::Sobel(luminance, across, CV_32F, 1, 0, 3, 1, 0, cv::BORDER_REFLECT_101);
  cv::Mat down;
  cv::Sobel(luminance, down, CV_32F, 0, 1, 3, 1, 0, cv::BORDER_REFLECT_101);
  cv::Mat strength;
  cv::magnitude(across, down, strength);
  cv::normalize(strength, strength, 0, 1, cv::NORM_MINMAX);
  return strength;
}

cv::Mat InterestMap(const cv::Mat& image) {
  const cv::Mat luminance = WeightedLuminance(image);
  cv::Mat saliency;
  cv::resize(SpectralSaliency(luminance), saliency, image.size(), 0, 0, cv::INTER_LINEAR);
  const cv::Mat edges = EdgeStrength(luminance);
  cv::Mat interest = double{0.4F} * edges + double{0.6F} * saliency;
  const float sigma = static_cast<float>(image.cols) * 0.02F;
  cv::GaussianBlur(interest, interest, cv::Size(0, 0), sigma, 0, cv::BORDER_REFLECT_101);
  cv::normalize(interest, interest, 0, 1, cv::NORM_MINMAX);
  return interest;
}

float ThirdsScore(const cv::Mat& interest, int x, int y, int width, int height) {
  const auto left = static_cast<float>(x);
  const auto top = static_cast<float>(y);
  const auto cw = static_cast<float>(width);
  const auto ch = static_cast<float>(height);
  const std::vector<cv::Point2f> points = {{left + cw / 3.0F, top + ch / 3.0F},
                                           {left + 2.0F * cw / 3.0F, top + ch / 3.0F},
                                           {left + cw / 3.0F, top + 2.0F * ch / 3.0F},
                                           {left + 2.0F * cw / 3.0F, top + 2.0F * ch / 3.0F}};
  const auto r = static_cast<float>(static_cast<int>(std::min(cw, ch) * 0.04F + 0.5F));
  double total = 0;
  for (const cv::Point2f& point : points) {
    const int x0 = std::max(static_cast<int>(point.x - r), 0);
    const int y0 = std::max(static_cast<int>(point.y - r), 0);
    const int x1 = std::min(static_cast<int>(point.x + r), interest.cols - 1);
    const int y1 = std::min(static_cast<int>(point.y + r), interest.rows - 1);
    if (x0 < x1 && y0 < y1) total += Sum(interest, cv::Rect(x0, y0, x1 - x0, y1 - y0));
  }
  return static_cast<float>(total);
}

CropRectangle BestCrop(const cv::Mat& interest, float aspect, float margin) {
  const auto w = static_cast<float>(interest.cols);
  const auto h = static_cast<float>(interest.rows);
  const int mx = static_cast<int>(w * margin);
  const int my = static_cast<int>(h * margin);
  CropRectangle crop = {0, 0, 1, 1};
  float best = -1e9F;
  for (float s = 1.0F; s >= 0.75F; s -= 0.05F) {
    int cw = 0;
    int ch = 0;
    if (w / h >= aspect) {
      ch = static_cast<int>(h * s);
      cw = static_cast<int>(static_cast<float>(ch) * aspect);
    } else {
      cw = static_cast<int>(w * s);
      ch = static_cast<int>(static_cast<float>(cw) / aspect);
    }
    cw = std::min(cw, interest.cols);
    ch = std::min(ch, interest.rows);
    const int step = std::max(static_cast<int>(static_cast<float>(std::min(cw, ch)) * 0.05F), 1);
    if (2 * my + ch > interest.rows || cw + 2 * mx > interest.cols) continue;
    for (int y = my; y + ch + my <= interest.rows; y += step) {
      for (int x = mx; x + cw + mx <= interest.cols; x += step) {
        const int area = cw * ch;
        const auto mean = static_cast<float>(Sum(interest, cv::Rect(x, y, cw, ch)) / area);
        const float t = ThirdsScore(interest, x, y, cw, ch);
        const float score = t / (static_cast<float>(area) * 0.001F + 1.0F) * 0.05F + mean + s * s * 0.2F;
        if (score > best) {
          best = score;
          crop = {static_cast<float>(x) / w, static_cast<float>(y) / h, static_cast<float>(cw) / w,
                  static_cast<float>(ch) / h};
        }
      }
    }
  }
  return crop;
}

CropRectangle FindCrop(const cv::Mat& image, float aspect, float margin) {
  if (image.empty()) return {0, 0, 1, 1};
  return BestCrop(InterestMap(image), aspect > 0.01F ? aspect : 1.5F, margin);
}

CropRectangle AutoCrop(const cv::Mat& image) {
  return FindCrop(ReducedFloatCopy(image, 512), 1.5F, 0.02F);
}

}  // namespace lumvik::reference
