#include "image/raw/area_reduction.h"

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace lumvik {
namespace {

// cv::resize ignores smaller shares of a source pixel.
constexpr double kMinShare = 1e-3;

bool IsWhole(double scale) {
  return std::abs(scale - cvRound(scale)) < DBL_EPSILON;
}

cv::Size ReducedSize(cv::Size source, double factor) {
  return {cvRound(source.width * factor), cvRound(source.height * factor)};
}

}  // namespace

// The reduced pixel i covers the source from i * scale on. 2000 / 6000, rounded to a float, makes a scale
// just below 3, and the shares are those of that scale.
AreaWeights::AreaWeights(int source, int reduced, double scale) {
  std::vector<size_t> first_weights;
  for (int i = 0; i < reduced; ++i) {
    const double begin = i * scale;
    const double end = begin + scale;
    const double width = std::min(scale, source - begin);
    const int last = std::min(cvFloor(end), source - 1);
    const int first = std::min(cvCeil(begin), last);
    const bool has_part_before = first - begin > kMinShare;
    first_weights.push_back(weights_.size());
    if (has_part_before) weights_.push_back(static_cast<float>((first - begin) / width));
    for (int x = first; x < last; ++x) weights_.push_back(static_cast<float>(1.0 / width));
    if (end - last > kMinShare) {
      weights_.push_back(static_cast<float>(std::min(std::min(end - last, 1.0), width) / width));
    }
    const auto count = static_cast<int>(weights_.size() - first_weights.back());
    taps_.push_back({has_part_before ? first - 1 : first, count, nullptr});
  }
  for (size_t i = 0; i < taps_.size(); ++i) taps_[i].weights = weights_.data() + first_weights[i];
}

cv::Range AreaWeights::Source(int begin, int end) const {
  const AreaTaps& last = taps_[static_cast<size_t>(end) - 1];
  return {taps_[static_cast<size_t>(begin)].first, last.first + last.count};
}

AreaReduction::AreaReduction(cv::Size source, double factor)
    : reduced_(ReducedSize(source, factor)),
      columns_(source.width, reduced_.width, 1.0 / factor),
      rows_(source.height, reduced_.height, 1.0 / factor) {}

bool AreaReduction::Supports(cv::Size source, double factor) {
  return factor < 1 && !IsWhole(1.0 / factor) && !ReducedSize(source, factor).empty();
}

cv::Rect AreaReduction::Source(const cv::Rect& reduced) const {
  const cv::Range x = columns_.Source(reduced.x, reduced.x + reduced.width);
  const cv::Range y = rows_.Source(reduced.y, reduced.y + reduced.height);
  return {x.start, y.start, x.size(), y.size()};
}

// Sums each row first, then the rows from top to bottom: the order decides the last bit.
void AreaReduction::Reduce(const cv::Mat& source, const cv::Rect& area, const RowKernels& kernels,
                           cv::Mat& image) const {
  const cv::Range source_columns = columns_.Source(area.x, area.x + area.width);
  const int first_row = rows_[area.y].first;
  const auto values = static_cast<size_t>(area.width) * kRgbaChannels;
  std::vector<float> sums(values);
  std::vector<float> total(values);
  int summed_row = -1;
  for (int y = area.y; y < area.y + area.height; ++y) {
    std::fill(total.begin(), total.end(), 0.0F);
    for (int tap = 0; tap < rows_[y].count; ++tap) {
      const int row = rows_[y].first + tap;
      // A row that two reduced ones share was summed last.
      if (row != summed_row) {
        const auto* pixels = source.ptr<uint16_t>(row - first_row) -
                             static_cast<ptrdiff_t>(source_columns.start) * kRgbaChannels;
        kernels.reduce_row(pixels, columns_.From(area.x), area.width, sums.data());
        summed_row = row;
      }
      kernels.add_weighted(sums.data(), rows_[y].weights[tap], static_cast<int>(values), total.data());
    }
    kernels.round(total.data(), area.width,
                  image.ptr<uint16_t>(y) + static_cast<ptrdiff_t>(area.x) * kRgbaChannels);
  }
}

}  // namespace lumvik
