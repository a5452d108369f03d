#include "pipeline/frame_transform.h"

#include <algorithm>

#include "pipeline/frame_stream.h"
#include "pipeline/gaussian_blur.h"

namespace lumvik {
namespace {

// Beyond that, storing the image costs less than reading its rows again for each chunk of rows.
constexpr int kMaxStreamedRows = 32;

// Rows of the frame where the height of the tile is tested.
constexpr int kTestedRows = 9;

}  // namespace

RowSource Transformed(const cv::Mat& image, const FrameTransform& transform) {
  const auto read = [tile = ImageTile{image, {0, 0}}, read = transform.read](const RowPart& part) {
    read(tile, part);
  };
  return {image.size(), read, true};
}

std::optional<StreamedFrame> Streamed(const FrameTransform& transform, cv::Size frame) {
  int rows = 0;
  int widest = 0;
  bool moves_up = false;
  for (int x = 0; x < frame.width; x += kStripColumns) {
    const PartColumns columns(std::min(kStripColumns, frame.width - x));
    const auto needed_at = [&](int y) {
      return transform.needs({nullptr, nullptr, nullptr, nullptr, columns, x, y});
    };
    moves_up |= needed_at(frame.height - 1).y < needed_at(0).y;
    for (int i = 0; i < kTestedRows; ++i) {
      const cv::Rect needed = needed_at((frame.height - 1) * i / (kTestedRows - 1));
      rows = std::max(rows, needed.height);
      widest = std::max(widest, needed.width);
    }
  }
  if (moves_up || rows > kMaxStreamedRows || widest > TileColumns(kStripColumns)) return {};
  return StreamedFrame{transform, rows};
}

}  // namespace lumvik
