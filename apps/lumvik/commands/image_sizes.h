// `lumvik image-sizes FILE...`, a hidden command run by `lumvik batch`: a file that crashes the header parser
// takes down this process instead of the batch.
#ifndef LUMVIK_APPS_COMMANDS_IMAGE_SIZES_H_
#define LUMVIK_APPS_COMMANDS_IMAGE_SIZES_H_

#include <CLI/App.hpp>

namespace lumvik {

inline constexpr char kImageSizesCommand[] = "image-sizes";

// Prints "WIDTH HEIGHT" for each file as soon as it is read, "0 0" when the size is unknown.
void AddImageSizesCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_IMAGE_SIZES_H_
