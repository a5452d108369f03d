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

void RunStrip(RowStream& stream, const RowSink& sink, Columns columns, cv::Range rows) {
  alignas(64) float planes[kChannels][kStripColumns];
  const PartColumns count(columns.Count());
  for (int y = rows.start; y < rows.end; ++y) {
    const RowPart part{planes[0], planes[1], planes[2], planes[3], count, columns.first, y};
    stream.Read(part);
    sink.store(part);
  }
}

}  // namespace

void RunRowSteps(const RowSource& source, const RowSteps& steps, const RowSink& sink) {
  const int width = source.size.width;
  const int height = source.size.height;
  const int threads = std::max(cv::getNumThreads(), 1);
  const int extra_rows = ExtraRows(steps);
  const int rows_per_chunk =
      std::max({height / (kChunksPerThread * threads), extra_rows * kRowsPerExtraRow, 1});
  // Memory order is fastest unless rows are read again for their neighbors.
  const int rows_per_strip = extra_rows == 0 ? 1 : rows_per_chunk;
  std::vector<std::unique_ptr<RowStream>> streams;
  streams.reserve(static_cast<size_t>(threads));
  for (int i = 0; i < threads; ++i) streams.push_back(MakeRowStream(source, steps));

  std::atomic<int> next_row{0};
  const auto run_chunks = [&](RowStream& stream) {
    for (int y = 0; (y = next_row.fetch_add(rows_per_chunk)) < height;) {
      const int end = std::min(y + rows_per_chunk, height);
      for (int top = y; top < end; top += rows_per_strip) {
        const cv::Range rows(top, std::min(top + rows_per_strip, end));
        for (int x = 0; x < width; x += kStripColumns) {
          RunStrip(stream, sink, {x, std::min(x + kStripColumns, width)}, rows);
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
