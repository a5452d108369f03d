#include "pipeline/row_steps.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <new>
#include <opencv2/core/utility.hpp>

namespace lumvik {
namespace {

// At the start of a chunk area stages read rows beside it: it has a multiple of them.
constexpr int kRowsPerExtraRow = 8;
constexpr int kChunksPerThread = 4;

int RadiusOf(const RowStep& step) {
  const auto* area = std::get_if<AreaKernel>(&step);
  return area == nullptr ? 0 : Radius(area->window);
}

// The rows of an image after some steps. One thread reads them, fastest a strip of columns from top to
// bottom.
class RowStream {
 public:
  RowStream() = default;
  virtual ~RowStream() = default;
  RowStream(const RowStream&) = delete;
  RowStream& operator=(const RowStream&) = delete;
  virtual void Read(const PixelRow& part) = 0;
};

class SourceStream : public RowStream {
 public:
  explicit SourceStream(const RowKernel& read) : read_(read) {}
  void Read(const PixelRow& part) override { read_(part); }

 private:
  const RowKernel& read_;
};

class PointStream : public RowStream {
 public:
  PointStream(std::unique_ptr<RowStream> input, const RowKernel& kernel)
      : input_(std::move(input)), kernel_(kernel) {}

  void Read(const PixelRow& part) override {
    input_->Read(part);
    kernel_(part);
  }

 private:
  std::unique_ptr<RowStream> input_;
  const RowKernel& kernel_;
};

// Keeps the pixels of a strip that the window reaches.
class AreaStream : public RowStream {
 public:
  AreaStream(std::unique_ptr<RowStream> input, cv::Size frame, int max_columns, const AreaKernel& kernel)
      : input_(std::move(input)),
        frame_(frame),
        kernel_(kernel),
        reach_(Radius(kernel.window)),
        kept_rows_(std::min(2 * reach_ + kRowsAtOnce, frame.height)),
        around_(static_cast<size_t>(2 * reach_ + kRowsAtOnce)),
        planes_(kernel.of == AreaKernel::Of::kLuminance ? kChannels + 1 : kChannels),
        kept_(kept_rows_ * planes_, WidenedColumns(max_columns, reach_), CV_32F),
        blurred_(kRowsAtOnce * kColors, max_columns, CV_32F),
        blur_(kernel.window, frame.width, max_columns) {}

  void Read(const PixelRow& part) override {
    MoveTo(part);
    const auto copy = [&](int plane, float* to) {
      std::copy_n(RowOf(plane, part.y) + (part.x - held_.first), part.columns, to);
    };
    copy(0, part.red);
    copy(1, part.green);
    copy(2, part.blue);
    copy(3, part.alpha);
    std::array<const float*, kColors> blurred = {};
    for (int color = 0; color < kColors; ++color) {
      blurred[static_cast<size_t>(color)] = BlurredRow(part.y - first_blurred_, color);
    }
    kernel_.change(part, blurred.data());
  }

 private:
  static constexpr int kColors = 3;
  static constexpr int kLuminance = kChannels;

  // The held columns of a kept row.
  float* RowOf(int plane, int y) { return kept_.ptr<float>(y % kept_rows_ * planes_ + plane); }

  float* BlurredRow(int n, int color) { return blurred_.ptr<float>(n * kColors + color); }

  // Makes the blurred rows of the part ready, with those of the rows below it that will be asked for next.
  void MoveTo(const PixelRow& part) {
    const Columns columns = {part.x, part.x + part.columns};
    const bool goes_on = part.y == y_ + 1 && columns.first == columns_.first && columns.last == columns_.last;
    if (!goes_on) next_ = std::max(part.y - reach_, 0);
    y_ = part.y;
    if (goes_on && y_ < first_blurred_ + kRowsAtOnce) return;
    columns_ = columns;
    held_ = columns.Widened(reach_, frame_.width);
    const int end = std::min(y_ + kRowsAtOnce + reach_, frame_.height);
    for (; next_ < end; ++next_) Keep(next_);
    BlurFrom(y_);
    first_blurred_ = y_;
  }

  void Keep(int y) {
    const PixelRow row = {RowOf(0, y), RowOf(1, y), RowOf(2, y), RowOf(3, y), held_.Count(), held_.first, y};
    input_->Read(row);
    if (kernel_.of == AreaKernel::Of::kLuminance) WriteLuminance(row, RowOf(kLuminance, y));
  }

  void BlurFrom(int y) {
    const float** first = around_.data() + reach_;
    for (int i = -reach_; i < reach_ + kRowsAtOnce; ++i) {
      first[i] = RowOf(0, Mirrored(y + i, frame_.height));
    }
    const auto blur_plane = [&](int plane, int color) {
      const size_t offset = kept_.step1() * static_cast<size_t>(plane);
      const auto row_at = [&](int i) { return first[i] + offset; };
      blur_.Blur(row_at, columns_, kRowsAtOnce, [&](int n) { return BlurredRow(n, color); });
    };
    if (kernel_.of == AreaKernel::Of::kLuminance) {
      blur_plane(kLuminance, 0);
    } else {
      for (int color = 0; color < kColors; ++color) blur_plane(color, color);
    }
  }

  std::unique_ptr<RowStream> input_;
  cv::Size frame_;
  const AreaKernel& kernel_;
  int reach_;
  int kept_rows_;
  std::vector<const float*> around_;  // the first planes of the rows that the window reaches
  int planes_;                        // of a row: its channels and, where that is blurred, the luminance
  cv::Mat kept_;                      // all planes of each row
  cv::Mat blurred_;                   // from row first_blurred_ on
  RowBlur blur_;
  Columns columns_{0, 0};
  Columns held_{0, 0};
  int y_ = 0;
  int first_blurred_ = 0;
  int next_ = 0;  // row to keep
};

// The most columns of a row that step `i` is asked for.
int ColumnsAfter(const RowSteps& steps, size_t i) {
  int columns = kStripColumns;
  for (size_t later = steps.size() - 1; later > i; --later) {
    if (const int reach = RadiusOf(steps[later]); reach > 0) columns = WidenedColumns(columns, reach);
  }
  return columns;
}

std::unique_ptr<RowStream> MakeStream(const RowImage& image, const RowSteps& steps) {
  std::unique_ptr<RowStream> stream = std::make_unique<SourceStream>(image.read);
  for (size_t i = 0; i < steps.size(); ++i) {
    const RowStep& step = steps[i];
    if (const auto* point = std::get_if<RowKernel>(&step)) {
      stream = std::make_unique<PointStream>(std::move(stream), *point);
    } else {
      stream = std::make_unique<AreaStream>(std::move(stream), image.size, ColumnsAfter(steps, i),
                                            std::get<AreaKernel>(step));
    }
  }
  return stream;
}

// That area stages read beside a chunk.
int ExtraRows(const RowSteps& steps) {
  int extra = 0;
  for (const RowStep& step : steps) extra += 2 * RadiusOf(step);
  return extra;
}

void RunStrip(RowStream& stream, const RowKernel& store, Columns columns, cv::Range rows) {
  alignas(64) float planes[kChannels][kStripColumns];
  for (int y = rows.start; y < rows.end; ++y) {
    const PixelRow part{planes[0], planes[1], planes[2], planes[3], columns.Count(), columns.first, y};
    stream.Read(part);
    store(part);
  }
}

}  // namespace

void RunRowSteps(const RowImage& image, const RowSteps& steps, const RowKernel& store) {
  const int threads = std::max(cv::getNumThreads(), 1);
  const int extra_rows = ExtraRows(steps);
  const int rows_per_chunk =
      std::max({image.size.height / (kChunksPerThread * threads), extra_rows * kRowsPerExtraRow, 1});
  // Where no row is read again for its neighbors, the order of memory is the fastest.
  const int rows_per_strip = extra_rows == 0 ? 1 : rows_per_chunk;
  std::vector<std::unique_ptr<RowStream>> streams;
  streams.reserve(static_cast<size_t>(threads));
  for (int i = 0; i < threads; ++i) streams.push_back(MakeStream(image, steps));

  std::atomic<int> next_row{0};
  const auto run_chunks = [&](RowStream& stream) {
    for (int y = 0; (y = next_row.fetch_add(rows_per_chunk)) < image.size.height;) {
      const int end = std::min(y + rows_per_chunk, image.size.height);
      for (int top = y; top < end; top += rows_per_strip) {
        const cv::Range rows(top, std::min(top + rows_per_strip, end));
        for (int x = 0; x < image.size.width; x += kStripColumns) {
          RunStrip(stream, store, {x, std::min(x + kStripColumns, image.size.width)}, rows);
        }
      }
    }
  };
  try {
    cv::parallel_for_(
        cv::Range(0, threads),
        [&](const cv::Range& range) {
          for (int i = range.start; i < range.end; ++i) run_chunks(*streams[static_cast<size_t>(i)]);
        },
        threads);
  } catch (const std::bad_alloc&) {
    next_row = 0;
    run_chunks(*streams.front());
  }
}

}  // namespace lumvik
