#include "commands/batch.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "batch/free_memory.h"
#include "batch/inputs.h"
#include "batch/memory.h"
#include "batch/names.h"
#include "batch/plan.h"
#include "batch/report.h"
#include "batch/run.h"
#include "batch/worker_process.h"
#include "files/file_paths.h"
#include "lumvik_host.hpp"
#include "options/export.h"
#include "options/jobs.h"
#include "options/passed_options.h"
#include "options/photograph.h"
#include "terminal/progress_bar.h"
#include "terminal/reported_failure.h"
#include "terminal/result_line.h"

namespace lumvik {
namespace {

constexpr char kBatch[] = "Batch";  // heading of its options in the help

struct BatchOptions {
  std::vector<std::string> inputs;
  std::string output_folder;
  std::string name_pattern = kDefaultNamePattern;
  std::string format = "jpg";
  unsigned jobs = DefaultJobs();
  bool resume = false;
  bool json = false;
  Photograph photograph;  // applies to every input
  ExportOptions how;
  std::vector<const CLI::Option*> develop_options;

  lumvik_host_format Format() const { return api::FormatOf("file." + format); }
};

void CheckUsage(const BatchOptions& options) {
  CheckBits(options.how, options.Format());
  const std::string fault = NamePatternFault(options.name_pattern, options.Format());
  if (!fault.empty()) throw CLI::ValidationError("--name", fault);
}

// The files that provide settings for a photograph.
std::vector<std::string> SettingsFiles(const Photograph& photograph, const std::string& input) {
  std::vector<std::string> files;
  for (const auto& file : {photograph.settings, SidecarOf(photograph, input)}) {
    if (file) files.push_back(*file);
  }
  return files;
}

std::vector<BatchOutcome> FirstOutcomes(const BatchOptions& options, const std::vector<BatchTask>& tasks) {
  std::vector<BatchOutcome> outcomes(tasks.size());
  for (std::size_t i = 0; options.resume && i < tasks.size(); ++i) {
    const auto settings = SettingsFiles(options.photograph, tasks[i].input);
    if (IsDone(tasks[i], settings)) outcomes[i].state = BatchState::kSkipped;
  }
  return outcomes;
}

std::string Megabytes(std::uint64_t bytes) {
  return std::to_string(bytes >> 20U) + " MB";
}

// The number of workers that the user wants and memory allows, which is reported on standard error.
unsigned ChooseWorkers(const std::vector<std::string>& photographs, unsigned jobs) {
  const std::vector<std::uint64_t> estimates = EstimateMemory(photographs);
  const std::uint64_t free = FreeMemory();
  const unsigned workers = WorkersThatFit(estimates, jobs, free);
  const unsigned processors = std::thread::hardware_concurrency();
  std::ostringstream text;
  text << photographs.size() << " to develop, " << workers << " at a time with "
       << std::max(processors / workers, 1U) << " of " << processors << " processors each; up to "
       << Megabytes(*std::max_element(estimates.begin(), estimates.end())) << " of memory each, "
       << Megabytes(free) << " available";
  Report(text.str());
  return workers;
}

// Returns the interruption that cut it short, if any.
std::optional<Interruption> RunWithProgress(const BatchOptions& options, BatchWork& work,
                                            std::vector<BatchOutcome>& outcomes) {
  std::vector<std::string> pending;
  for (std::size_t i = 0; i < outcomes.size(); ++i) {
    if (outcomes[i].state == BatchState::kPending) pending.push_back(work.tasks[i].input);
  }
  if (pending.empty()) return std::nullopt;
  try {
    MakeFolder(options.output_folder);
    work.workers = ChooseWorkers(pending, options.jobs);
    ProgressBar bar(pending.size(), ProgressBar::Elsewhere::kPlainLines);
    RunBatch(work, outcomes, [&](std::size_t i) {
      if (!options.json && outcomes[i].state == BatchState::kDeveloped) {
        bar.Wipe();
        PrintResult(work.tasks[i].output, {outcomes[i].width, outcomes[i].height});
        std::cout.flush();
      }
      bar.Advance();
    });
  } catch (const Interruption& interruption) {
    return interruption;
  }
  return std::nullopt;
}

void DevelopBatch(const BatchOptions& options) {
  CheckUsage(options);
  GivenSettings(options.photograph, std::nullopt);  // reports a bad settings file before any work is done
  const BatchInputs inputs = FindBatchInputs(options.inputs, options.output_folder);
  BatchWork work;
  work.tasks = PlanBatch(inputs, options.output_folder, options.name_pattern, options.Format());
  work.develop_options = PassedOptions(options.develop_options);
  std::vector<BatchOutcome> outcomes = FirstOutcomes(options, work.tasks);

  const auto begun = std::chrono::steady_clock::now();
  const std::optional<Interruption> interruption = RunWithProgress(options, work, outcomes);
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
  const BatchReport report{work, outcomes, inputs.failures, seconds, interruption.has_value()};
  if (options.json) PrintBatchJson(report);
  ReportBatch(report);
  if (interruption) throw Interruption(*interruption);
  if (HasFailures(report)) throw ReportedFailure();
}

std::string CheckFormat(const std::string& text) {
  if (text == "jpg" || text == "png" || text == "tiff") return {};
  return "'" + text + "' is not jpg, png or tiff";
}

void AddBatchOptions(CLI::App& command, BatchOptions& options) {
  command
      .add_option("IN", options.inputs,
                  "Photographs, folders of photographs, and patterns with the wildcards *, ? and [...]")
      ->required()
      ->type_name("");
  command
      .add_option("-o,--output", options.output_folder, "The folder to write to; it is created if necessary")
      ->required()
      ->type_name("DIR")
      ->group(kBatch);
  command
      .add_option("--name", options.name_pattern,
                  "Output names, using {stem}, {n}, {ext} and {folder} (default {stem}.{ext})")
      ->type_name("PATTERN")
      ->group(kBatch);
  command.add_option("--format", options.format, "Output format: jpg, png or tiff (default jpg)")
      ->type_name("FORMAT")
      ->check(CLI::Validator(CheckFormat, ""))
      ->group(kBatch);
  AddJobsOption(command, options.jobs, "Photographs to develop in parallel (default: one per processor)")
      ->group(kBatch);
  command.add_flag("--resume", options.resume, "Skip photographs that are already developed")->group(kBatch);
  command.add_flag("--json", options.json, "Print a JSON report")->group(kBatch);
}

}  // namespace

void AddBatchCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("batch", "Develop many photographs with the same settings");
  auto options = std::make_shared<BatchOptions>();
  AddDecodingOption(*command, options->photograph);
  AddDevelopOptions(*command, options->photograph);
  AddExportOptions(*command, options->how);
  const CLI::App* so_far = command;
  options->develop_options = so_far->get_options();
  AddBatchOptions(*command, *options);
  command->callback([options] { DevelopBatch(*options); });
}

}  // namespace lumvik
