// Previews: copies of a frame in the size and layout that a host asks for.
#ifndef LUMVIK_HOST_PHOTO_PREVIEW_H_
#define LUMVIK_HOST_PHOTO_PREVIEW_H_

#include <cstddef>
#include <cstdint>
#include <opencv2/core/types.hpp>

#include "lumvik_host.h"
#include "photo/frame.h"

namespace lumvik::host {

struct PreviewLayout {
  int width = 0;
  int height = 0;
  int channels = kFrameChannels;
  std::size_t stride = 0;   // bytes from row to row
  bool blue_first = false;  // BGRA or BGR

  // Bytes; the last row has no padding.
  std::size_t Size() const;
};

// A size reduced to fit, keeping its proportions; 0: no limit. Never less than a pixel.
cv::Size FittingSize(cv::Size size, int max_width, int max_height);

// Throws Failure for options that are out of range whatever the frame.
void CheckPreviewOptions(const lumvik_host_preview_options& options);

// Throws Failure for a stride that is shorter than a row.
PreviewLayout LayoutOf(const lumvik_host_preview_options& options, const Frame& frame);

// True if the frame itself is the preview.
bool IsWholeFrame(const PreviewLayout& layout, const Frame& frame);

// Copies a frame to `pixels`, which has room for the layout. Throws Failure.
void CopyPreview(const Frame& frame, const PreviewLayout& layout, std::uint8_t* pixels);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_PREVIEW_H_
