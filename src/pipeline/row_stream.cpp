#include "pipeline/row_stream.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "pipeline/frame_stream.h"
#include "pipeline/gaussian_blur.h"
#include "pipeline/mirrored_border.h"
#include "pipeline/packed_rows.h"

namespace lumvik {
namespace {

int RadiusOf(const RowStep& step) {
  const auto* area = std::get_if<AreaTransform>(&step);
  return area == nullptr ? 0 : area->blur.Radius();
}

class SourceStream : public RowStream {
 public:
  explicit SourceStream(const RowSource& source) : source_(source) {}
  void Read(const RowPart& part) override { source_.read(part); }

 private:
  const RowSource& source_;
};

class TransformStream : public RowStream {
 public:
  TransformStream(std::unique_ptr<RowStream> input, const RowTransform& transform)
      : input_(std::move(input)), transform_(transform) {}

  void Read(const RowPart& part) override {
    input_->Read(part);
    transform_.apply(part);
  }

 private:
  std::unique_ptr<RowStream> input_;
  const RowTransform& transform_;
};

template <int lanes>
[[gnu::always_inline]] inline Lanes<lanes> Reversed(const Lanes<lanes>& values) {
  if constexpr (lanes == 16) {
    return __builtin_shufflevector(values, values, 15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  } else if constexpr (lanes == 8) {
    return __builtin_shufflevector(values, values, 7, 6, 5, 4, 3, 2, 1, 0);
  } else {
    return __builtin_shufflevector(values, values, 3, 2, 1, 0);
  }
}

// Swaps vectors from both ends, then the values between them.
template <int lanes>
void Reverse(float* values, int count) {
  float* first = values;
  float* last = values + count;
  for (; last - first >= 2 * lanes; first += lanes) {
    last -= lanes;
    const auto front = LoadLanes<lanes>(first);
    StoreLanes(Reversed<lanes>(LoadLanes<lanes>(last)), first);
    StoreLanes(Reversed<lanes>(front), last);
  }
  std::reverse(first, last);
}

void Reverse(const RowPart& part) {
  VectorizedByLanes([&part](auto lanes) {
    for (float* values : {part.red, part.green, part.blue, part.alpha}) Reverse<lanes>(values, part.columns);
  });
}

class ViewStream : public RowStream {
 public:
  ViewStream(std::unique_ptr<RowStream> input, const FrameView& view)
      : input_(std::move(input)), view_(view) {}

  void Read(const RowPart& part) override {
    const cv::Rect& area = view_.area;
    RowPart from = part;
    from.x = area.x + (view_.flip_h ? area.width - part.x - part.columns : part.x);
    from.y = RowAt(part.y);
    from.next_y = RowAt(part.next_y);
    input_->Read(from);
    if (view_.flip_h) Reverse(part);
  }

 private:
  int RowAt(int y) const { return view_.area.y + (view_.flip_v ? view_.area.height - 1 - y : y); }

  std::unique_ptr<RowStream> input_;
  FrameView view_;
};

// Holds the rows of a strip that the blur's kernel covers.
class AreaStream : public RowStream {
 public:
  AreaStream(std::unique_ptr<RowStream> input, cv::Size frame, int max_columns, const AreaTransform& area)
      : input_(std::move(input)),
        frame_(frame),
        area_(area),
        radius_(area.blur.Radius()),
        held_rows_(std::min(2 * radius_ + kRowsPerBlock, frame.height)),
        around_(static_cast<size_t>(2 * radius_ + kRowsPerBlock)),
        planes_(BlursLuminance() ? kChannels + 1 : kChannels),
        held_(held_rows_ * planes_, WidenedColumns(max_columns, radius_), CV_32F),
        blurred_(kRowsPerBlock * kColorChannels, max_columns, CV_32F),
        blur_(area.blur.Kernel(), frame.width, max_columns) {}

  void Read(const RowPart& part) override {
    MoveTo(part);
    const auto copy = [&](int plane, float* to) {
      std::copy_n(HeldRow(plane, part.y) + (part.x - held_columns_.first), int{part.columns}, to);
    };
    copy(0, part.red);
    copy(1, part.green);
    copy(2, part.blue);
    copy(3, part.alpha);
    std::array<const float*, kColorChannels> blurred = {};
    for (int color = 0; color < kColorChannels; ++color) {
      blurred[static_cast<size_t>(color)] = BlurredRow(part.y - first_blurred_, color);
    }
    area_.change(part, blurred.data());
  }

 private:
  static constexpr int kLuminancePlane = kChannels;

  bool BlursLuminance() const { return area_.input == AreaTransform::Input::kLuminance; }

  float* HeldRow(int plane, int y) { return held_.ptr<float>(y % held_rows_ * planes_ + plane); }

  float* BlurredRow(int row, int color) { return blurred_.ptr<float>(row * kColorChannels + color); }

  // Blurs the block of rows that begins with the part, unless the last block still covers it.
  void MoveTo(const RowPart& part) {
    const Columns columns = {part.x, part.x + part.columns};
    const bool is_next_row =
        part.y == y_ + 1 && columns.first == columns_.first && columns.last == columns_.last;
    if (!is_next_row) next_ = std::max(part.y - radius_, 0);
    y_ = part.y;
    if (is_next_row && y_ < first_blurred_ + kRowsPerBlock) return;
    columns_ = columns;
    held_columns_ = Widened(columns, radius_, frame_.width);
    const int end = std::min(y_ + kRowsPerBlock + radius_, frame_.height);
    for (; next_ < end; ++next_) Hold(next_);
    BlurFrom(y_);
    first_blurred_ = y_;
  }

  void Hold(int y) {
    ForEachPart(held_columns_, [&](int x, PartColumns columns) {
      const auto held_at = [&](int plane) { return HeldRow(plane, y) + (x - held_columns_.first); };
      const RowPart part = {held_at(0), held_at(1), held_at(2), held_at(3), columns, x, y};
      input_->Read(part);
      if (BlursLuminance()) WriteLuminance(part, held_at(kLuminancePlane));
    });
  }

  void BlurFrom(int y) {
    const float** first = around_.data() + radius_;
    for (int i = -radius_; i < radius_ + kRowsPerBlock; ++i) {
      first[i] = HeldRow(0, Mirrored(y + i, frame_.height));
    }
    const auto blur_plane = [&](int plane, int color) {
      const size_t offset = held_.step1() * static_cast<size_t>(plane);
      const auto row_at = [&](int i) { return first[i] + offset; };
      blur_.Blur(row_at, columns_, kRowsPerBlock, [&](int row) { return BlurredRow(row, color); });
    };
    if (BlursLuminance()) {
      blur_plane(kLuminancePlane, 0);
    } else {
      for (int color = 0; color < kColorChannels; ++color) blur_plane(color, color);
    }
  }

  std::unique_ptr<RowStream> input_;
  cv::Size frame_;
  const AreaTransform& area_;
  int radius_;
  int held_rows_;
  std::vector<const float*> around_;  // the first planes of the rows around a block
  int planes_;                        // per row: the channels and, if it is blurred, the luminance
  cv::Mat held_;                      // all planes of each row
  cv::Mat blurred_;                   // from row first_blurred_ on
  RowBlur blur_;
  Columns columns_{0, 0};
  Columns held_columns_{0, 0};
  int y_ = 0;
  int first_blurred_ = 0;
  int next_ = 0;  // row to hold
};

// The most columns that step `i` is asked for at a time.
int ColumnsAfter(const RowSteps& steps, size_t i) {
  int columns = kStripColumns;
  for (size_t later = steps.size() - 1; later > i; --later) {
    // Even without a radius: columns that a view has moved are no longer aligned.
    if (std::holds_alternative<AreaTransform>(steps[later])) {
      columns = WidenedColumns(columns, RadiusOf(steps[later]));
    }
    if (std::holds_alternative<StreamedFrame>(steps[later])) columns = TileColumns(columns);
  }
  return columns;
}

}  // namespace

std::unique_ptr<RowStream> MakeRowStream(const RowSource& source, const RowSteps& steps) {
  std::unique_ptr<RowStream> stream = std::make_unique<SourceStream>(source);
  cv::Size frame = source.size;
  for (size_t i = 0; i < steps.size(); ++i) {
    if (const auto* transform = std::get_if<RowTransform>(&steps[i])) {
      stream = std::make_unique<TransformStream>(std::move(stream), *transform);
    } else if (const auto* view = std::get_if<FrameView>(&steps[i])) {
      stream = std::make_unique<ViewStream>(std::move(stream), *view);
      frame = view->area.size();
    } else if (const auto* streamed = std::get_if<StreamedFrame>(&steps[i])) {
      stream = MakeFrameStream(std::move(stream), frame, ColumnsAfter(steps, i), *streamed);
    } else {
      stream = std::make_unique<AreaStream>(std::move(stream), frame, ColumnsAfter(steps, i),
                                            std::get<AreaTransform>(steps[i]));
    }
  }
  return stream;
}

int ExtraRows(const RowSteps& steps) {
  int extra = 0;
  for (const RowStep& step : steps) {
    extra += 2 * RadiusOf(step);
    if (const auto* streamed = std::get_if<StreamedFrame>(&step)) extra += streamed->rows;
  }
  return extra;
}

}  // namespace lumvik
