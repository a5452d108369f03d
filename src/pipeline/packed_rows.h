// Reading and storing the rows of packed images, and of planes made of them.
#ifndef LUMVIK_PIPELINE_PACKED_ROWS_H_
#define LUMVIK_PIPELINE_PACKED_ROWS_H_

#include "pipeline/row_part.h"

namespace lumvik {

// The rows of a packed image, 16-bit (CV_16UC4) or working (CV_32FC4, source / 65535). Shares its pixels.
RowSource RowsOf(const cv::Mat& packed);

// Fills a part from the same pixels of `packed`, and stores them there.
void ReadPixels(const cv::Mat& packed, const RowPart& part);
void WritePixels(const RowPart& part, const cv::Mat& packed);

// Stores rows in a packed image of either type. 16-bit values are rounded to nearest and clamped to 0..65535;
// NaN gives 0.
RowSink StoreIn(const cv::Mat& packed);

// Writes the luminance of a part.
void WriteLuminance(const RowPart& part, float* luminance);

// Stores it in `plane` (CV_32FC1).
RowSink StoreLuminance(const cv::Mat& plane);

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_PACKED_ROWS_H_
