// `lumvik batch IN... -o DIR`: develops many photographs alike.
#ifndef LUMVIK_APPS_BATCH_COMMAND_H_
#define LUMVIK_APPS_BATCH_COMMAND_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`, to run and to fail as AddDevelopCommand says. It throws ReportedFailure when
// some of the photographs failed, and Interruption when the user ended it.
void AddBatchCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_COMMAND_H_
