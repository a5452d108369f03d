#include "pipeline/row_kernel.h"

#include <opencv2/core/utility.hpp>

namespace lumvik {
namespace {

constexpr int kChannels = 4;
constexpr float kToUnit = static_cast<float>(1.0 / 65535.0);
constexpr float kFullScale = 65535.0F;

float ToFloat(uint16_t sample) {
  return static_cast<float>(sample) * kToUnit;
}
float ToFloat(float sample) {
  return sample;
}

// Rounds to nearest, ties to even, as OpenCV's conversion does.
void FromFloat(float value, uint16_t& sample) {
  constexpr float kRoundingShift = 8388608.0F;  // 2^23: floats above it have no fraction
  const float scaled = value * kFullScale;
  const float floored = scaled > 0.0F ? scaled : 0.0F;  // written so that a NaN becomes 0
  const float clamped = floored < kFullScale ? floored : kFullScale;
  sample = static_cast<uint16_t>(static_cast<int>((clamped + kRoundingShift) - kRoundingShift));
}
void FromFloat(float value, float& sample) {
  sample = value;
}

template <typename Sample>
void LoadRow(const Sample* from, const PixelRow& row) {
  for (int x = 0; x < row.columns; ++x) {
    row.red[x] = ToFloat(from[kChannels * x]);
    row.green[x] = ToFloat(from[kChannels * x + 1]);
    row.blue[x] = ToFloat(from[kChannels * x + 2]);
  }
}

template <typename Sample>
void StoreRow(const PixelRow& row, Sample* to) {
  for (int x = 0; x < row.columns; ++x) {
    FromFloat(row.red[x], to[kChannels * x]);
    FromFloat(row.green[x], to[kChannels * x + 1]);
    FromFloat(row.blue[x], to[kChannels * x + 2]);
  }
}

template <typename From, typename To>
void CopyAlpha(const From* from, To* to, int columns) {
  for (int x = 0; x < columns; ++x) {
    const From alpha = from[kChannels * x + 3];
    if constexpr (std::is_same_v<From, To>) {
      to[kChannels * x + 3] = alpha;
    } else {
      FromFloat(ToFloat(alpha), to[kChannels * x + 3]);
    }
  }
}

template <typename From, typename To>
void RunRows(const cv::Mat& input, const std::vector<RowKernel>& kernels, cv::Mat& output) {
  const int columns = input.cols;
  cv::parallel_for_(cv::Range(0, input.rows), [&](const cv::Range& range) {
    std::vector<float> planes(static_cast<size_t>(columns) * 3);
    PixelRow row{planes.data(), planes.data() + columns, planes.data() + 2 * columns, columns, 0};
    for (int y = range.start; y < range.end; ++y) {
      const From* from = input.ptr<From>(y);
      To* to = output.ptr<To>(y);
      row.y = y;
      LoadRow(from, row);
      for (const RowKernel& kernel : kernels) kernel(row);
      CopyAlpha(from, to, columns);
      StoreRow(row, to);
    }
  });
}

}  // namespace

void RunRowKernels(const cv::Mat& input, const std::vector<RowKernel>& kernels, cv::Mat& output) {
  const bool from_16_bit = input.depth() == CV_16U;
  const bool to_16_bit = output.depth() == CV_16U;
  CV_Assert(input.channels() == kChannels && output.channels() == kChannels && input.size() == output.size());
  const auto run = from_16_bit ? (to_16_bit ? RunRows<uint16_t, uint16_t> : RunRows<uint16_t, float>)
                               : (to_16_bit ? RunRows<float, uint16_t> : RunRows<float, float>);
  run(input, kernels, output);
}

}  // namespace lumvik
