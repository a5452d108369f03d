#include "photo/preview.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <opencv2/core.hpp>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <string>

#include "base/failure.h"
#include "photo/engine_call.h"
#include "settings/range.h"

namespace lumvik::host {
namespace {

constexpr char kFailure[] = "cannot make a preview";
constexpr int kRgbChannels = 3;
constexpr Range kBackgroundBlur = {0, 100};

Failure OutOfRange(const std::string& option, const std::string& value, const std::string& wanted) {
  return {LUMVIK_HOST_INVALID_ARGUMENT, option + " is " + value + ", which is not " + wanted};
}

// The side that belongs to another one reduced from `from` to `to`, never less than a pixel.
int Proportional(int side, int from, int to) {
  const std::int64_t reduced = (std::int64_t{2} * side * to + from) / (std::int64_t{2} * from);
  return static_cast<int>(std::max<std::int64_t>(reduced, 1));
}

bool HasFrameFormat(const PreviewLayout& layout) {
  return layout.channels == kFrameChannels && !layout.blue_first;
}

// Memory bandwidth takes more than one core to use up.
void CopyRows(const cv::Mat& from, cv::Mat& to) {
  cv::parallel_for_(cv::Range(0, from.rows), [&](const cv::Range& rows) {
    cv::Mat part = to.rowRange(rows);
    from.rowRange(rows).copyTo(part);
  });
}

void ConvertRows(const cv::Mat& from, const PreviewLayout& layout, cv::Mat& to) {
  if (HasFrameFormat(layout)) {
    CopyRows(from, to);
  } else if (layout.channels == kRgbChannels) {
    cv::cvtColor(from, to, layout.blue_first ? cv::COLOR_RGBA2BGR : cv::COLOR_RGBA2RGB);
  } else {
    cv::cvtColor(from, to, cv::COLOR_RGBA2BGRA);
  }
}

}  // namespace

cv::Size FittingSize(cv::Size size, int max_width, int max_height) {
  if (max_width > 0 && size.width > max_width) {
    size = {max_width, Proportional(size.height, size.width, max_width)};
  }
  if (max_height > 0 && size.height > max_height) {
    size = {Proportional(size.width, size.height, max_height), max_height};
  }
  return size;
}

std::size_t PreviewLayout::Size() const {
  return stride * static_cast<std::size_t>(height - 1) + static_cast<std::size_t>(width * channels);
}

void CheckPreviewOptions(const lumvik_host_preview_options& options) {
  const auto check_side = [](const char* name, int side) {
    if (side < 0) throw OutOfRange(name, std::to_string(side), "positive or 0");
  };
  check_side("max_width", options.max_width);
  check_side("max_height", options.max_height);
  if (options.channels != 0 && options.channels != kRgbChannels && options.channels != kFrameChannels) {
    throw OutOfRange("channels", std::to_string(options.channels), "3 or 4");
  }
  if (!kBackgroundBlur.Holds(options.background_blur)) {
    throw OutOfRange("background_blur", std::to_string(options.background_blur),
                     "in " + kBackgroundBlur.Text());
  }
}

PreviewLayout LayoutOf(const lumvik_host_preview_options& options, const Frame& frame) {
  const cv::Size size = FittingSize({frame.width, frame.height}, options.max_width, options.max_height);
  const int channels = options.channels == 0 ? kFrameChannels : options.channels;
  const auto row = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(channels);
  const std::size_t stride = options.stride == 0 ? row : options.stride;
  constexpr std::size_t kMaxStride = std::numeric_limits<int>::max();
  if (stride < row || stride > kMaxStride) {
    throw OutOfRange("stride", std::to_string(stride),
                     "in " + std::to_string(row) + ".." + std::to_string(kMaxStride));
  }
  return {size.width, size.height, channels, stride, options.blue_first != 0};
}

bool IsWholeFrame(const PreviewLayout& layout, const Frame& frame) {
  return layout.width == frame.width && layout.height == frame.height && HasFrameFormat(layout) &&
         layout.stride == static_cast<std::size_t>(layout.width) * kFrameChannels;
}

void CopyPreview(const Frame& frame, const PreviewLayout& layout, std::uint8_t* pixels) {
  CallLibrary(kFailure, [&] {
    const cv::Mat whole(frame.height, frame.width, CV_8UC4, frame.pixels.get());
    cv::Mat preview(layout.height, layout.width, CV_8UC(layout.channels), pixels, layout.stride);
    if (preview.size() == whole.size()) {
      ConvertRows(whole, layout, preview);
    } else if (HasFrameFormat(layout)) {
      cv::resize(whole, preview, preview.size(), 0, 0, cv::INTER_AREA);
    } else {
      cv::Mat reduced;
      cv::resize(whole, reduced, preview.size(), 0, 0, cv::INTER_AREA);
      ConvertRows(reduced, layout, preview);
    }
    return LUMVIK_OK;
  });
}

}  // namespace lumvik::host
