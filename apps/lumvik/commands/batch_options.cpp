#include "commands/batch_options.h"

#include <CLI/CLI.hpp>

#include "batch/shard.h"
#include "options/in_range.h"
#include "options/range.h"

namespace lumvik {
namespace {

constexpr char kBatch[] = "Batch";  // heading of its options in the help
constexpr Range<unsigned> kTimeLimits = {0, 1000000};

std::string CheckShard(const std::string& text) {
  if (ShardFrom(text)) return {};
  return "'" + text + "' is not a share such as 2/5";
}

void AddInputArguments(CLI::App& command, BatchOptions& options) {
  command
      .add_option("IN", options.inputs,
                  "Photographs, folders of photographs, and patterns with the wildcards *, ? and [...]")
      ->type_name("");
  command
      .add_option("--files-from", options.files_from,
                  "Also develop the photographs listed in FILE, or in standard input for -: one name per "
                  "line, or separated by NUL")
      ->type_name("FILE")
      ->group(kBatch);
  command
      .add_option("--shard", options.shard,
                  "Develop one of N shares, numbered from 1, so that several machines can work on a batch")
      ->type_name("I/N")
      ->check(CLI::Validator(CheckShard, ""))
      ->group(kBatch);
}

void AddBatchOutputOptions(CLI::App& command, BatchOptions& options) {
  command
      .add_option("-o,--output", options.output_folder, "The folder to write to; it is created if necessary")
      ->required()
      ->type_name("DIR")
      ->group(kBatch);
  command
      .add_option("--name", options.name_pattern,
                  "Output names, using {stem}, {n}, {ext}, {folder}, {source_ext}, {date}, {time}, {camera} "
                  "and {lens} (default {stem}.{ext})")
      ->type_name("PATTERN")
      ->group(kBatch);
  AddFormatOption(command, options.format, "Output format: jpg, png or tiff (default jpg)")->group(kBatch);
}

void AddRunOptions(CLI::App& command, BatchOptions& options) {
  AddJobsOption(command, options.jobs, "Photographs to develop in parallel (default: one per processor)")
      ->group(kBatch);
  command
      .add_option("--time-limit", options.time_limit,
                  "Seconds after which a photograph is given up; 0 for no limit (default 300)")
      ->type_name("SECONDS")
      ->check(InRange(kTimeLimits))
      ->group(kBatch);
  command.add_flag("--resume", options.resume, "Skip photographs that are already developed")->group(kBatch);
}

}  // namespace

void AddOptionsOfBatch(CLI::App& command, BatchOptions& options) {
  AddDecodingOption(command, options.photograph);
  AddDevelopOptions(command, options.photograph);
  AddExportOptions(command, options.how);
  const CLI::App& so_far = command;
  options.develop_options = so_far.get_options();
  AddInputArguments(command, options);
  AddBatchOutputOptions(command, options);
  AddRunOptions(command, options);
  AddReportingOptions(command, options.reporting);
  AddDryRunOption(command, options.reporting);
}

void CheckUsage(const BatchOptions& options) {
  if (options.inputs.empty() && !options.files_from) throw CLI::RequiredError("IN or --files-from");
  CheckBits(options.how, options.Format());
  const std::string fault = NamePatternFault(options.Names());
  if (!fault.empty()) throw CLI::ValidationError("--name", fault);
}

}  // namespace lumvik
