#include "commands/batch.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "batch/expected_mark.h"
#include "batch/free_memory.h"
#include "batch/inputs.h"
#include "batch/listed_files.h"
#include "batch/memory.h"
#include "batch/names.h"
#include "batch/numbers.h"
#include "batch/plan.h"
#include "batch/report.h"
#include "batch/run.h"
#include "batch/shard.h"
#include "batch/shot_fields.h"
#include "batch/survey.h"
#include "batch/work_folder.h"
#include "batch/worker_process.h"
#include "commands/batch_options.h"
#include "files/file_paths.h"
#include "lumvik_host.hpp"
#include "options/jobs.h"
#include "options/passed_options.h"
#include "options/photograph.h"
#include "options/reporting.h"
#include "terminal/progress_bar.h"
#include "terminal/reported_failure.h"
#include "terminal/result_line.h"

namespace lumvik {
namespace {

BatchInputs InputsOf(const BatchOptions& options) {
  BatchArguments arguments;
  arguments.inputs = options.inputs;
  if (options.files_from) arguments.listed = ListedFiles(*options.files_from);
  return FindBatchInputs(arguments, options.output_folder);
}

std::vector<std::string> NamesFor(const BatchOptions& options, const std::vector<BatchInput>& photographs) {
  const NamePattern pattern = options.Names();
  std::vector<ShotFields> shots(photographs.size());
  if (UsesAny(pattern, {"date", "time", "camera", "lens"})) {
    std::vector<std::string> paths;
    paths.reserve(photographs.size());
    for (const BatchInput& photograph : photographs) paths.push_back(photograph.path);
    shots = ReadShotFields(paths);
  }
  std::vector<NameFields> fields;
  fields.reserve(photographs.size());
  for (std::size_t i = 0; i < photographs.size(); ++i) {
    fields.push_back(FieldsOf(photographs[i], shots[i]));
  }
  const std::vector<std::string> numbers =
      options.resume && UsesAny(pattern, {"n"})
          ? ContinuedNumbers(photographs, fields, pattern, options.output_folder)
          : CountedNumbers(photographs.size());
  std::vector<std::string> names;
  names.reserve(fields.size());
  for (std::size_t i = 0; i < fields.size(); ++i) names.push_back(NameOf(pattern, fields[i], numbers[i]));
  return names;
}

// Reports all clashes.
void RefuseClashes(const BatchPlan& plan) {
  if (plan.clashes.empty()) return;
  for (const BatchClash& clash : plan.clashes) Report(MessageOf(clash));
  throw std::runtime_error(
      plan.extensions_differ
          ? "nothing was developed; use {source_ext} in --name to keep them apart, as in --name "
            "'{stem}-{source_ext}.{ext}'"
          : "nothing was developed; use {n} or {folder} in --name to keep them apart");
}

BatchWork WorkOf(const BatchOptions& options, const BatchInputs& inputs) {
  const BatchPlan plan = PlanBatch(inputs, NamesFor(options, inputs.photographs), options.output_folder,
                                   *ShardFrom(options.shard));
  RefuseClashes(plan);
  BatchWork work;
  work.tasks = plan.tasks;
  work.develop_options = PassedOptions(options.develop_options);
  work.expected_mark = [&options](const std::string& input) {
    return ExpectedMark(input, options.photograph, options.how, options.Format());
  };
  work.overwrite = options.how.overwrite;
  work.time_limit = std::chrono::seconds(options.time_limit);
  return work;
}

std::string Megabytes(std::uint64_t bytes) {
  return std::to_string(bytes >> 20U) + " MB";
}

// The number of workers that the user wants and memory allows, which is reported on standard error.
unsigned ChooseWorkers(const std::vector<std::string>& photographs, unsigned jobs,
                       const Reporting& reporting) {
  const std::vector<std::uint64_t> estimates = EstimateMemory(photographs);
  const std::uint64_t free = FreeMemory();
  const unsigned workers = WorkersThatFit(estimates, jobs, free);
  const unsigned processors = std::thread::hardware_concurrency();
  std::ostringstream text;
  text << photographs.size() << " to develop, " << workers << " at a time with "
       << std::max(processors / workers, 1U) << " of " << processors << " processors each; up to "
       << Megabytes(*std::max_element(estimates.begin(), estimates.end())) << " of memory each, "
       << Megabytes(free) << " available";
  if (!reporting.quiet) Report(text.str());
  return workers;
}

void PrintDone(const BatchTask& task, const BatchOutcome& outcome, const Reporting& reporting) {
  if (outcome.state != BatchState::kDeveloped) return;
  if (!reporting.json && !reporting.quiet) {
    PrintResult(task.output, {outcome.width, outcome.height});
    std::cout.flush();
  }
  if (!reporting.verbose) return;
  std::ostringstream text;
  text << "developed '" << task.input << "' in " << std::fixed << std::setprecision(2) << outcome.seconds
       << " s";
  Report(text.str());
}

// For outputs that are not developed again; a run cleans the folders that it writes to.
void CleanWorkFolders(const BatchWork& work) {
  std::set<std::filesystem::path> folders;
  for (const BatchTask& task : work.tasks) folders.insert(std::filesystem::path(task.output).parent_path());
  for (const std::filesystem::path& folder : folders) CleanWorkFolder(folder);
}

// Runs the pending tasks. Sets in the report how it ended.
void RunWithProgress(const BatchOptions& options, BatchWork& work, std::vector<BatchOutcome>& outcomes,
                     BatchReport& report) {
  std::vector<std::string> pending;
  for (std::size_t i = 0; i < outcomes.size(); ++i) {
    if (outcomes[i].state == BatchState::kPending) pending.push_back(work.tasks[i].input);
  }
  if (pending.empty()) return CleanWorkFolders(work);
  MakeFolder(options.output_folder);
  work.workers = ChooseWorkers(pending, options.jobs, options.reporting);
  ProgressBar bar(options.reporting.quiet ? 0 : pending.size(), ProgressBar::Elsewhere::kPlainLines);
  const auto done = [&](std::size_t i) {
    bar.Wipe();
    PrintDone(work.tasks[i], outcomes[i], options.reporting);
    bar.Advance();
  };
  const auto notify = [&](const std::string& sentence) {
    if (options.reporting.quiet) return;
    bar.Wipe();
    Report(sentence);
  };
  report.full_disk = RunBatch(work, outcomes, done, notify);
}

void AddOwnOutputs(const BatchInputs& inputs, BatchWork& work, std::vector<BatchOutcome>& outcomes) {
  for (const std::string& path : inputs.own_outputs) {
    work.tasks.push_back({path, ""});
    outcomes.emplace_back();
    outcomes.back().state = BatchState::kSkipped;
    outcomes.back().reason = "it is an output of this command";
  }
}

void DevelopBatch(const BatchOptions& options) {
  CheckUsage(options);
  GivenSettings(options.photograph, std::nullopt);  // reports a bad settings file before any work is done
  const BatchInputs inputs = InputsOf(options);
  BatchWork work = WorkOf(options, inputs);
  std::vector<BatchOutcome> outcomes = Survey(work, inputs.canonical_paths, options.resume);
  AddOwnOutputs(inputs, work, outcomes);

  BatchReport report{work, outcomes, inputs.failures, options.reporting};
  const auto begun = std::chrono::steady_clock::now();
  std::optional<Interruption> interruption;
  try {
    if (!options.reporting.dry_run) RunWithProgress(options, work, outcomes, report);
  } catch (const Interruption& request) {
    interruption = request;
  }
  report.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
  report.interrupted = interruption.has_value();
  if (options.reporting.json) {
    PrintBatchJson(report);
  } else if (options.reporting.dry_run) {
    PrintDryRun(report);
  }
  ReportBatch(report);
  if (interruption) throw Interruption(*interruption);
  if (StatusOf(report) != kSuccess) throw ReportedFailure(StatusOf(report));
}

}  // namespace

void AddBatchCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("batch", "Develop many photographs with the same settings");
  auto options = std::make_shared<BatchOptions>();
  AddOptionsOfBatch(*command, *options);
  command->callback([options] { DevelopBatch(*options); });
}

}  // namespace lumvik
