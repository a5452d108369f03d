// The rows of a frame after a transform whose input is not stored.
#ifndef LUMVIK_PIPELINE_FRAME_STREAM_H_
#define LUMVIK_PIPELINE_FRAME_STREAM_H_

#include <memory>

#include "pipeline/frame_transform.h"
#include "pipeline/row_stream.h"

namespace lumvik {

// Reads `input` at most TileColumns(max_columns) columns at a time.
std::unique_ptr<RowStream> MakeFrameStream(std::unique_ptr<RowStream> input, cv::Size frame, int max_columns,
                                           const StreamedFrame& streamed);

// The width of a tile for parts of at most `max_columns` columns.
int TileColumns(int max_columns);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_FRAME_STREAM_H_
