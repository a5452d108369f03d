// `lumvik similar DIR`: finds the photographs in a folder that look alike.
#ifndef LUMVIK_APPS_COMMANDS_SIMILAR_H_
#define LUMVIK_APPS_COMMANDS_SIMILAR_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; see AddDevelopCommand. Also throws ReportedFailure when some files or folders
// could not be read.
void AddSimilarCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_SIMILAR_H_
