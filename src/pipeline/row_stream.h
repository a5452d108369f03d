// The rows of an image after some steps, as one thread reads them.
#ifndef LUMVIK_PIPELINE_ROW_STREAM_H_
#define LUMVIK_PIPELINE_ROW_STREAM_H_

#include <memory>

#include "pipeline/row_steps.h"

namespace lumvik {

// Fastest when a strip of columns is read from top to bottom.
class RowStream {
 public:
  RowStream() = default;
  virtual ~RowStream() = default;
  RowStream(const RowStream&) = delete;
  RowStream& operator=(const RowStream&) = delete;

  virtual void Read(const RowPart& part) = 0;
};

// A stream that is read at most kStripColumns columns at a time. It refers to its arguments.
std::unique_ptr<RowStream> MakeRowStream(const RowSource& source, const RowSteps& steps);

// Rows that the steps read above and below a chunk of rows.
int ExtraRows(const RowSteps& steps);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_ROW_STREAM_H_
