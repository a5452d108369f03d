// The `lumvik` command: parses the arguments, runs the subcommand and maps its outcome to an exit status.
// Data goes to standard output, messages to standard error.
#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

#include "commands/cutout.h"
#include "commands/develop.h"
#include "commands/hash.h"
#include "commands/help.h"
#include "commands/histogram.h"
#include "commands/image_sizes.h"
#include "commands/info.h"
#include "commands/mask.h"
#include "commands/settings.h"
#include "commands/shot_data.h"
#include "commands/similar.h"
#include "commands/suggest.h"
#include "commands/thumb.h"
#include "lumvik_host.hpp"
#include "terminal/exit_status.h"
#include "terminal/reported_failure.h"
#if defined(_WIN32)
#include "terminal/console_win32.h"
#else
#include "batch/worker_process.h"
#include "commands/batch.h"
#endif

namespace {

int Fail(const std::exception& error, lumvik::ExitStatus status) {
  lumvik::Report(error.what());
  return status;
}

void RunCommand(int argc, char** argv) {
  CLI::App app("Develops photographs.", "lumvik");
  app.set_version_flag("--version", "lumvik " + lumvik::api::Version(), "Print the version and exit");
  app.set_help_flag("-h,--help", "Print this help and exit");
  app.allow_windows_style_options(false);  // paths may start with a slash
  app.require_subcommand(0, 1);            // (1, 1) would hide the name of an unknown command
  lumvik::AddDevelopCommand(app);
#if !defined(_WIN32)
  lumvik::AddBatchCommand(app);
#endif
  lumvik::AddHistogramCommand(app);
  lumvik::AddMaskCommand(app);
  lumvik::AddCutoutCommand(app);
  lumvik::AddSuggestCommand(app);
  lumvik::AddSettingsCommand(app);
  lumvik::AddInfoCommand(app);
  lumvik::AddThumbCommand(app);
  lumvik::AddHashCommand(app);
  lumvik::AddSimilarCommand(app);
  lumvik::AddImageSizesCommand(app);
  lumvik::AddShotDataCommand(app);
  lumvik::AddHelpCommand(app);
  try {
    app.parse(argc, argv);
    if (app.get_subcommands().empty()) std::cout << app.help();
  } catch (const CLI::Success& help_or_version) {
    app.exit(help_or_version);
  }
  if (!std::cout.flush()) throw std::runtime_error("cannot write to standard output");
}

}  // namespace

int main(int argc, char** argv) {
#if defined(_WIN32)
  const lumvik::Utf8Console console;
#endif
  try {
    RunCommand(argc, argv);
    return lumvik::kSuccess;
#if !defined(_WIN32)
  } catch (const lumvik::Interruption& interruption) {
    return interruption.Status();
#endif
  } catch (const lumvik::ReportedFailure& failure) {
    return failure.Status();
  } catch (const CLI::ParseError& error) {
    return Fail(error, lumvik::kUsage);
  } catch (const lumvik::api::Error& error) {
    return Fail(error, lumvik::ExitStatusOf(error));
  } catch (const std::exception& error) {
    return Fail(error, lumvik::kFailure);
  }
}
