#include "pipeline/frame_stream.h"

#include <algorithm>
#include <utility>

#include "pipeline/packed_rows.h"

namespace lumvik {
namespace {

// Held on both sides of what a part needs, for the parts below it.
constexpr int kMarginColumns = 8;

// The tile moves down in its buffer, and is copied back to the top at the end.
constexpr int kTilesPerBuffer = 3;

class FrameStream : public RowStream {
 public:
  FrameStream(std::unique_ptr<RowStream> input, cv::Size frame, int max_columns,
              const StreamedFrame& streamed)
      : input_(std::move(input)),
        frame_(frame),
        transform_(streamed.transform),
        tile_{cv::Mat(kTilesPerBuffer * (streamed.rows + 1), std::min(TileColumns(max_columns), frame.width),
                      CV_32FC4),
              cv::Point()},
        row_(kChannels, tile_.pixels.cols, CV_32F) {}

  // A part that needs more than fits is read in smaller ones; what a single pixel needs always fits.
  void Read(const RowPart& part) override {
    for (int first = 0; first < part.columns;) {
      int count = part.columns - first;
      cv::Rect needed = transform_.needs(SubPart(part, first, count));
      while (count > 1 && !Fits(needed)) {
        count /= 2;
        needed = transform_.needs(SubPart(part, first, count));
      }
      CV_Assert(Fits(needed));
      MoveTo(needed);
      tile_.origin = held_.tl();
      transform_.read(tile_, SubPart(part, first, count));
      first += count;
    }
  }

 private:
  static RowPart SubPart(const RowPart& part, int first, int count) {
    return {part.red + first,
            part.green + first,
            part.blue + first,
            part.alpha + first,
            PartColumns(count),
            part.x + first,
            part.y,
            part.next_y};
  }

  bool Fits(const cv::Rect& needed) const {
    return needed.width <= tile_.pixels.cols && needed.height <= tile_.pixels.rows;
  }

  void MoveTo(const cv::Rect& needed) {
    const bool goes_on = needed.x >= held_.x && needed.br().x <= held_.br().x && needed.y <= held_.br().y &&
                         needed.br().y >= held_.y;
    if (!goes_on) StartAt(needed);
    if (needed.y < held_.y) InsertRowsFrom(needed.y);
    if (needed.br().y > held_.y + tile_.pixels.rows) DropRowsAbove(needed.y);
    for (; held_.br().y < needed.br().y; ++held_.height) Hold(held_.br().y);
  }

  void StartAt(const cv::Rect& needed) {
    const int spare = std::min(tile_.pixels.cols - needed.width, 2 * kMarginColumns);
    const int x = std::clamp(needed.x - spare / 2, 0, frame_.width - needed.width - spare);
    held_ = {x, needed.y, needed.width + spare, 0};
  }

  void DropRowsAbove(int y) {
    const int dropped = y - held_.y;
    for (int row = dropped; row < held_.height; ++row) CopyRow(row, row - dropped);
    held_.y += dropped;
    held_.height -= dropped;
  }

  // Where positions lie above the frame, the mirrored rows move up.
  void InsertRowsFrom(int y) {
    const int inserted = held_.y - y;
    held_.height = std::min(held_.height, tile_.pixels.rows - inserted);
    for (int row = held_.height - 1; row >= 0; --row) CopyRow(row, row + inserted);
    held_.y = y;
    held_.height += inserted;
    for (int i = 0; i < inserted; ++i) Hold(y + i);
  }

  void CopyRow(int from, int to) {
    std::copy_n(tile_.pixels.ptr<cv::Vec4f>(from), held_.width, tile_.pixels.ptr<cv::Vec4f>(to));
  }

  void Hold(int y) {
    ForEachPart({held_.x, held_.br().x}, [this, y](int x, PartColumns columns) {
      RowPart part = {
          row_.ptr<float>(0), row_.ptr<float>(1), row_.ptr<float>(2), row_.ptr<float>(3), columns, x, y};
      input_->Read(part);
      part.x -= held_.x;
      part.y -= held_.y;
      WritePixels(part, tile_.pixels);
    });
  }

  std::unique_ptr<RowStream> input_;
  cv::Size frame_;
  const FrameTransform& transform_;
  ImageTile tile_;
  cv::Mat row_;    // its planes
  cv::Rect held_;  // of the input, in the upper left corner of the tile
};

}  // namespace

std::unique_ptr<RowStream> MakeFrameStream(std::unique_ptr<RowStream> input, cv::Size frame, int max_columns,
                                           const StreamedFrame& streamed) {
  return std::make_unique<FrameStream>(std::move(input), frame, max_columns, streamed);
}

int TileColumns(int max_columns) {
  return max_columns + max_columns / 2;
}

}  // namespace lumvik
