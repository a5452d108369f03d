// `lumvik shot-data FILE...`, a hidden command run by `lumvik batch`: a file that crashes the parser of its
// metadata takes down this process instead of the batch.
#ifndef LUMVIK_APPS_COMMANDS_SHOT_DATA_H_
#define LUMVIK_APPS_COMMANDS_SHOT_DATA_H_

#include <CLI/App.hpp>

namespace lumvik {

inline constexpr char kShotDataCommand[] = "shot-data";

// Prints a JSON array of date and time, maker, model and lens for each file as soon as it is read; empty
// texts for what is unknown.
void AddShotDataCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_SHOT_DATA_H_
