// One pass over the rows of an image: each part goes through several steps while it is in the cache.
#ifndef LUMVIK_PIPELINE_ROW_STEPS_H_
#define LUMVIK_PIPELINE_ROW_STEPS_H_

#include <variant>
#include <vector>

#include "pipeline/area_transform.h"
#include "pipeline/frame_transform.h"

namespace lumvik {

// The blur of an area transform must not be wide here.
using RowStep = std::variant<RowTransform, AreaTransform, FrameView, StreamedFrame>;
using RowSteps = std::vector<RowStep>;

// The size of a frame after steps.
cv::Size SizeAfter(cv::Size frame, const RowSteps& steps);

// Passes every row of `source` through the steps, in order, and to `sink`, on OpenCV's worker threads. All
// that can fail does so before the first row is stored: if there is no memory for tasks, the calling thread
// does every row.
void RunRowSteps(const RowSource& source, const RowSteps& steps, const RowSink& sink);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_STEPS_H_
