#include "pipeline/stages/lens_geometry.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "base/code_scale.h"
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

// Columns whose two sources lie at the same distances from them.
struct Run {
  Columns columns;
  int to_first;
  int to_second;
};

std::vector<Run> RunsOf(const Line& line) {
  std::vector<Run> runs;
  for (size_t i = 0; i < line.first.size(); ++i) {
    const int x = static_cast<int>(i);
    const int to_first = line.first[i] - x;
    const int to_second = line.second[i] - x;
    if (runs.empty() || runs.back().to_first != to_first || runs.back().to_second != to_second) {
      runs.push_back({{x, x}, to_first, to_second});
    }
    runs.back().columns.last = x + 1;
  }
  return runs;
}

// One color of an image, resized.
class ResizedColor {
 public:
  ResizedColor(cv::Size frame, int color, float factor) : color_(color) {
    const auto scale = static_cast<double>(factor);
    const cv::Size resized(cvRound(frame.width * scale), cvRound(frame.height * scale));
    CV_Assert(!resized.empty());
    // OpenCV copies a plane whose size does not change.
    const double used_scale = resized == frame ? 1.0 : scale;
    // Sizes are compared because half the difference is 0 for a plane one pixel too small.
    const bool is_cut = resized.width >= frame.width && resized.height >= frame.height;
    columns_ = ResizedLine(frame.width, used_scale, resized.width, is_cut);
    rows_ = ResizedLine(frame.height, used_scale, resized.height, is_cut);
    runs_ = RunsOf(columns_);
  }

  // The rectangle between the first and the last of the pixels that a part is made of.
  cv::Rect Needs(const RowPart& part) const {
    const auto left = static_cast<size_t>(part.x);
    const size_t right = left + static_cast<size_t>(part.columns) - 1;
    const auto y = static_cast<size_t>(part.y);
    return {cv::Point(columns_.first[left], rows_.first[y]),
            cv::Point(columns_.second[right] + 1, rows_.second[y] + 1)};
  }

  void Read(const ImageTile& tile, const RowPart& part, float* values) const {
    for (const Run& run : runs_) {
      const int first = std::max(run.columns.first, part.x);
      const int last = std::min(run.columns.last, part.x + part.columns);
      if (first >= last) continue;
      if (tile.pixels.depth() == CV_16U) {
        ReadRun<uint64_t>(tile, run, {first, last}, part.y, values + (first - part.x));
      } else {
        ReadRun<cv::Vec4f>(tile, run, {first, last}, part.y, values + (first - part.x));
      }
    }
  }

 private:
  static float ColorOf(uint64_t pixel, int color) {
    return static_cast<float>(static_cast<int>((pixel >> (16 * color)) & 0xFFFF)) * kUnitPerCode;
  }
  static float ColorOf(const cv::Vec4f& pixel, int color) { return pixel[color]; }

  template <typename Pixel>
  void ReadRun(const ImageTile& tile, const Run& run, Columns columns, int y,
               float* __restrict values) const {
    const auto row = static_cast<size_t>(y);
    const auto pixels_of = [&](int source_row) {
      return reinterpret_cast<const Pixel*>(tile.pixels.ptr(source_row - tile.origin.y)) + columns.first -
             tile.origin.x;
    };
    const Pixel* top = pixels_of(rows_.first[row]);
    const Pixel* bottom = pixels_of(rows_.second[row]);
    const float top_weight = rows_.first_weight[row];
    const float bottom_weight = rows_.second_weight[row];
    const float* left_weight = columns_.first_weight.data() + columns.first;
    const float* right_weight = columns_.second_weight.data() + columns.first;
    Vectorized([=, left = run.to_first, right = run.to_second, color = color_] {
      for (int i = 0; i < columns.Count(); ++i) {
        const float above =
            ColorOf(top[i + left], color) * left_weight[i] + ColorOf(top[i + right], color) * right_weight[i];
        const float below = ColorOf(bottom[i + left], color) * left_weight[i] +
                            ColorOf(bottom[i + right], color) * right_weight[i];
        values[i] = above * top_weight + below * bottom_weight;
      }
    });
  }

  int color_;
  Line columns_;
  Line rows_;
  std::vector<Run> runs_;
};

}  // namespace

FrameTransform DistortionCorrection(cv::Size frame, float amount) {
  const Lens lens(frame, amount / 100.0F * kDistortionStrength);
  return BilinearSampling(frame, [lens](const RowPart& part, SamplePositions& positions) {
    Vectorized([&] { LocatePixels(lens, part.x, part.y, part.columns, positions.x, positions.y); });
  });
}

FrameTransform AberrationCorrection(cv::Size frame, float amount) {
  const float strength = amount / 100.0F * kAberrationStrength;
  const auto red = std::make_shared<const ResizedColor>(frame, kRed, 1.0F + strength);
  const auto blue = std::make_shared<const ResizedColor>(frame, kBlue, 1.0F - strength);
  const auto needs = [red, blue](const RowPart& part) {
    return red->Needs(part) | blue->Needs(part) | cv::Rect(part.x, part.y, part.columns, 1);
  };
  const auto read = [red, blue](const ImageTile& tile, const RowPart& part) {
    RowPart unchanged = part;
    unchanged.x -= tile.origin.x;
    unchanged.y -= tile.origin.y;
    unchanged.next_y -= tile.origin.y;
    ReadPixels(tile.pixels, unchanged);
    red->Read(tile, part, part.red);
    blue->Read(tile, part, part.blue);
  };
  return {needs, read};
}

}  // namespace lumvik
