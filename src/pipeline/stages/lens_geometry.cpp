#include "pipeline/stages/lens_geometry.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "base/vectorized.h"
#include "pipeline/bilinear_sampler.h"
#include "pipeline/packed_rows.h"

namespace lumvik {
namespace {

constexpr float kDistortionStrength = -0.5F;
constexpr float kAberrationStrength = 0.003F;
constexpr int kRed = 0;
constexpr int kBlue = 2;

struct Lens {
  Lens(cv::Size frame, float strength)
      : center_x(static_cast<float>(frame.width) * 0.5F),
        center_y(static_cast<float>(frame.height) * 0.5F),
        radius(std::max(center_y, center_x)),
        k(strength) {}

  float center_x;
  float center_y;
  float radius;
  float k;
};

// The positions that the pixels of a part are sampled at.
void LocatePixels(const Lens& lens, int first_x, int y, int columns, int* __restrict to_x,
                  int* __restrict to_y) {
  constexpr auto kScale = static_cast<float>(kPositionsPerPixel);
  const float ny = (static_cast<float>(y) - lens.center_y) / lens.radius;
  for (int i = 0; i < columns; ++i) {
    const float nx = (static_cast<float>(first_x + i) - lens.center_x) / lens.radius;
    const float factor = (ny * ny + nx * nx) * lens.k + 1.0F;
    to_x[i] = NearestPosition((factor * nx * lens.radius + lens.center_x) * kScale);
    to_y[i] = NearestPosition((factor * ny * lens.radius + lens.center_y) * kScale);
  }
}

// Linear interpolation along one direction of a plane resized by `factor` as cv::resize does it with
// cv::INTER_LINEAR, then cropped or padded about its center to its former length.
struct Line {
  std::vector<int> first;
  std::vector<int> second;
  std::vector<float> first_weight;  // both 0 where the plane was padded
  std::vector<float> second_weight;
};

Line ResizedLine(int length, double factor, int resized_length, bool is_cut) {
  const int offset = (resized_length - length) / 2;
  Line line;
  for (int i = 0; i < length; ++i) {
    const int resized = is_cut ? i + offset : i - std::max(-offset, 0);
    const bool exists = resized >= 0 && resized < resized_length;
    const auto place = static_cast<float>((resized + 0.5) * (1.0 / factor) - 0.5);
    const int whole = cvFloor(place);
    const bool is_inner = whole >= 0 && whole < length - 1;
    const float fraction = is_inner ? place - static_cast<float>(whole) : 0.0F;
    const int first = std::clamp(whole, 0, length - 1);
    line.first.push_back(first);
    line.second.push_back(std::min(first + 1, length - 1));
    line.first_weight.push_back(exists ? 1.0F - fraction : 0.0F);
    line.second_weight.push_back(exists ? fraction : 0.0F);
  }
  return line;
}

// One color of the working image, resized.
class ResizedColor {
 public:
  ResizedColor(const cv::Mat& working, int color, float factor) : working_(working), color_(color) {
    const auto scale = static_cast<double>(factor);
    const cv::Size resized(cvRound(working.cols * scale), cvRound(working.rows * scale));
    CV_Assert(!resized.empty());
    // OpenCV copies a plane whose size does not change.
    const double used_scale = resized == working.size() ? 1.0 : scale;
    // Sizes are compared because half the difference is 0 for a plane one pixel too small.
    const bool is_cut = resized.width >= working.cols && resized.height >= working.rows;
    columns_ = ResizedLine(working.cols, used_scale, resized.width, is_cut);
    rows_ = ResizedLine(working.rows, used_scale, resized.height, is_cut);
  }

  void Read(const RowPart& part, float* __restrict values) const {
    const auto y = static_cast<size_t>(part.y);
    const float* top = working_.ptr<float>(rows_.first[y]) + color_;
    const float* bottom = working_.ptr<float>(rows_.second[y]) + color_;
    const float top_weight = rows_.first_weight[y];
    const float bottom_weight = rows_.second_weight[y];
    const int* first = columns_.first.data() + part.x;
    const int* second = columns_.second.data() + part.x;
    const float* left_weight = columns_.first_weight.data() + part.x;
    const float* right_weight = columns_.second_weight.data() + part.x;
    Vectorized([=, columns = part.columns] {
      for (int i = 0; i < columns; ++i) {
        const int left = first[i] * kChannels;
        const int right = second[i] * kChannels;
        const float above = top[left] * left_weight[i] + top[right] * right_weight[i];
        const float below = bottom[left] * left_weight[i] + bottom[right] * right_weight[i];
        values[i] = above * top_weight + below * bottom_weight;
      }
    });
  }

 private:
  cv::Mat working_;
  int color_;
  Line columns_;
  Line rows_;
};

}  // namespace

RowSource CorrectDistortion(const cv::Mat& working, float amount) {
  const Lens lens(working.size(), amount / 100.0F * kDistortionStrength);
  return Sampled(working, [lens](const RowPart& part, SamplePositions& positions) {
    Vectorized([&] { LocatePixels(lens, part.x, part.y, part.columns, positions.x, positions.y); });
  });
}

RowSource CorrectChromaticAberration(const cv::Mat& working, float amount) {
  const float strength = amount / 100.0F * kAberrationStrength;
  const auto red = std::make_shared<const ResizedColor>(working, kRed, 1.0F + strength);
  const auto blue = std::make_shared<const ResizedColor>(working, kBlue, 1.0F - strength);
  const auto read = [unchanged = RowsOf(working).read, red, blue](const RowPart& part) {
    unchanged(part);
    red->Read(part, part.red);
    blue->Read(part, part.blue);
  };
  return {working.size(), read};
}

}  // namespace lumvik
