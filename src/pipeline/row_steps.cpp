#include "pipeline/row_steps.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <opencv2/core/utility.hpp>

#include "pipeline/gaussian_blur.h"
#include "pipeline/row_stream.h"

namespace lumvik {
namespace {

// Area transforms read extra rows around each chunk; a chunk is this many times as high.
constexpr int kRowsPerExtraRow = 8;
constexpr int kChunksPerThread = 4;

// The rows that such a strip is sampled from stay in L2.
constexpr int kRowsPerSampledStrip = 32;

// Whether the steps that hold rows read them from top to bottom when the last step is read from bottom to
// top.
bool IsUpsideDown(const RowSteps& steps) {
  bool upside_down = false;
  for (const RowStep& step : steps) {
    const auto* view = std::get_if<FrameView>(&step);
    if (view != nullptr && view->flip_v) upside_down = !upside_down;
    if (std::holds_alternative<StreamedFrame>(step)) upside_down = false;
  }
  return upside_down;
}

void RunStrip(RowStream& stream, const RowSink& sink, Columns columns, cv::Range rows, bool upside_down) {
  alignas(64) float planes[kChannels][kStripColumns];
  const PartColumns count(columns.Count());
  for (int i = rows.start; i < rows.end; ++i) {
    const int y = upside_down ? rows.end - 1 - (i - rows.start) : i;
    const int next_y = upside_down ? y - 1 : y + 1;
    const RowPart part{planes[0], planes[1], planes[2], planes[3], count, columns.first, y, next_y};
    stream.Read(part);
    sink.store(part);
  }
}

}  // namespace

cv::Size SizeAfter(cv::Size frame, const RowSteps& steps) {
  for (const RowStep& step : steps) {
    if (const auto* view = std::get_if<FrameView>(&step)) frame = view->area.size();
  }
  return frame;
}

void RunRowSteps(const RowSource& source, const RowSteps& steps, const RowSink& sink) {
  const cv::Size frame = SizeAfter(source.size, steps);
  const bool upside_down = IsUpsideDown(steps);
  const int threads = std::max(cv::getNumThreads(), 1);
  const int extra_rows = ExtraRows(steps);
  const int rows_per_chunk =
      std::max({frame.height / (kChunksPerThread * threads), extra_rows * kRowsPerExtraRow, 1});
  // Memory order is fastest unless rows are read again for their neighbors.
  const int rows_per_source_strip = source.is_sampled ? kRowsPerSampledStrip : 1;
  const int rows_per_strip = extra_rows == 0 ? rows_per_source_strip : rows_per_chunk;
  std::vector<std::unique_ptr<RowStream>> streams;
  streams.reserve(static_cast<size_t>(threads));
  for (int i = 0; i < threads; ++i) streams.push_back(MakeRowStream(source, steps));

  std::atomic<int> next_row{0};
  const auto run_chunks = [&](RowStream& stream) {
    for (int y = 0; (y = next_row.fetch_add(rows_per_chunk)) < frame.height;) {
      const int end = std::min(y + rows_per_chunk, frame.height);
      for (int top = y; top < end; top += rows_per_strip) {
        const int bottom = std::min(top + rows_per_strip, end);
        const cv::Range rows =
            upside_down ? cv::Range(y + end - bottom, y + end - top) : cv::Range(top, bottom);
        for (int x = 0; x < frame.width; x += kStripColumns) {
          RunStrip(stream, sink, {x, std::min(x + kStripColumns, frame.width)}, rows, upside_down);
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
