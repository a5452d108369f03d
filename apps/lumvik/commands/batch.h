// `lumvik batch IN... -o DIR`: develops many photographs with the same settings.
#ifndef LUMVIK_APPS_COMMANDS_BATCH_H_
#define LUMVIK_APPS_COMMANDS_BATCH_H_

#include <CLI/App.hpp>

namespace lumvik {

// Adds the command to `app`; see AddDevelopCommand. Also throws ReportedFailure when some photographs failed,
// and Interruption when the user stopped the batch.
void AddBatchCommand(CLI::App& app);

}  // namespace lumvik

#endif  // LUMVIK_APPS_COMMANDS_BATCH_H_
