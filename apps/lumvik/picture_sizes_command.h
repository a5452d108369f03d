// `lumvik picture-sizes FILE...`, which `lumvik batch` runs and the help does not show: a file that no reader
// of headers survives ends this process, and not the batch.
#ifndef LUMVIK_APPS_PICTURE_SIZES_COMMAND_H_
#define LUMVIK_APPS_PICTURE_SIZES_COMMAND_H_

#include <CLI/App.hpp>

namespace lumvik {

inline constexpr char kPictureSizesCommand[] = "picture-sizes";

// Prints a line "WIDTH HEIGHT" for each file as soon as it is read, "0 0" when its header does not tell.
void AddPictureSizesCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_PICTURE_SIZES_COMMAND_H_
