// The size of a written image.
#ifndef LUMVIK_APPS_OPTIONS_OUTPUT_SIZE_H_
#define LUMVIK_APPS_OPTIONS_OUTPUT_SIZE_H_

#include <CLI/App.hpp>

#include "lumvik_host.hpp"

namespace lumvik {

// A box into which the image is reduced, or a part of its size. Images are never enlarged.
struct OutputSize {
  api::Size box;       // 0: no limit
  double percent = 0;  // 0: no reduction
};

// Adds --size: 2048 (long side), 1600x1200 (box) or 50%.
CLI::Option* AddSizeOption(CLI::App& command, OutputSize& size);

// The box for an image that was developed at this size.
api::Size BoxOf(const OutputSize& size, api::Size developed);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_OUTPUT_SIZE_H_
