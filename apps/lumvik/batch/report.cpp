#include "batch/report.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "terminal/json.h"
#include "terminal/printable.h"
#include "terminal/reported_failure.h"

namespace lumvik {
namespace {

const char* NameOf(BatchState state) {
  switch (state) {
    case BatchState::kSkipped:
      return "skipped";
    case BatchState::kDeveloped:
      return "developed";
    case BatchState::kDamaged:
      return "damaged";
    case BatchState::kFailed:
      return "failed";
    case BatchState::kPending:
      break;
  }
  return "pending";
}

std::ptrdiff_t Count(const BatchReport& report, BatchState state) {
  return std::count_if(report.outcomes.begin(), report.outcomes.end(),
                       [=](const BatchOutcome& outcome) { return outcome.state == state; });
}

std::ptrdiff_t CountDamagedDeveloped(const BatchReport& report) {
  return std::count_if(report.outcomes.begin(), report.outcomes.end(),
                       [](const BatchOutcome& outcome) { return !outcome.damage.empty(); });
}

nlohmann::ordered_json JsonOf(const BatchTask& task, const BatchOutcome& outcome) {
  nlohmann::ordered_json json = {{"input", task.input}};
  if (!task.output.empty()) json["output"] = task.output;
  json["status"] = NameOf(outcome.state);
  if (outcome.state == BatchState::kDeveloped) {
    json["width"] = outcome.width;
    json["height"] = outcome.height;
    json["seconds"] = outcome.seconds;
  }
  if (!outcome.failure.empty()) json["error"] = outcome.failure;
  if (!outcome.reason.empty()) json["reason"] = outcome.reason;
  if (!outcome.damage.empty()) json["damage"] = outcome.damage;
  if (!outcome.warnings.empty()) json["warnings"] = outcome.warnings;
  return json;
}

// Why the batch ended before all photographs were done.
std::string StopOf(const BatchReport& report) {
  return "the disk of '" + *report.full_disk + "' is full; free some space and continue with --resume";
}

void ReportPhotograph(const BatchTask& task, const BatchOutcome& outcome, const Reporting& reporting) {
  if (!outcome.failure.empty()) Report(outcome.failure);
  if (reporting.quiet) return;
  if (!outcome.damage.empty()) Report("warning: '" + task.input + "' is damaged: " + outcome.damage);
  for (const std::string& warning : outcome.warnings) Report("warning: '" + task.input + "': " + warning);
  const bool is_named = task.output.empty();  // and yet not developed
  if (!outcome.reason.empty() && (reporting.verbose || is_named)) {
    Report("skipped '" + task.input + "': " + outcome.reason);
  }
}

std::string SummaryOf(const BatchReport& report) {
  std::ostringstream text;
  if (report.interrupted) text << "interrupted: ";
  text << Count(report, BatchState::kDeveloped) << " developed";
  if (const auto damaged = CountDamagedDeveloped(report)) text << " (" << damaged << " damaged)";
  if (const auto skipped = Count(report, BatchState::kSkipped)) text << ", " << skipped << " skipped";
  if (const auto damaged = Count(report, BatchState::kDamaged)) {
    text << ", " << damaged << " damaged and not developed";
  }
  if (const auto failed = Count(report, BatchState::kFailed)) text << ", " << failed << " failed";
  if (const auto pending = Count(report, BatchState::kPending)) {
    text << ", " << pending << " not started or not finished; continue with --resume";
  }
  text << " (" << std::fixed << std::setprecision(1) << report.seconds << " s)";
  return text.str();
}

std::string DryRunSummaryOf(const BatchReport& report) {
  return std::to_string(Count(report, BatchState::kPending)) + " to develop, " +
         std::to_string(Count(report, BatchState::kSkipped)) + " to skip, " +
         std::to_string(Count(report, BatchState::kFailed)) + " would fail";
}

}  // namespace

ExitStatus StatusOf(const BatchReport& report) {
  if (report.full_disk) return kDiskFull;
  if (!report.failures.empty() || Count(report, BatchState::kFailed) > 0) return kFailure;
  return Count(report, BatchState::kDamaged) > 0 ? kDamaged : kSuccess;
}

void PrintBatchJson(const BatchReport& report) {
  nlohmann::ordered_json json = {
      {"interrupted", report.interrupted}, {"jobs", report.work.workers}, {"seconds", report.seconds}};
  if (report.reporting.dry_run) json["dry_run"] = true;
  if (report.full_disk) json["stopped"] = StopOf(report);
  for (const BatchState state : {BatchState::kDeveloped, BatchState::kSkipped, BatchState::kDamaged,
                                 BatchState::kFailed, BatchState::kPending}) {
    json[NameOf(state)] = Count(report, state);
  }
  json["developed_damaged"] = CountDamagedDeveloped(report);
  json["photographs"] = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i < report.outcomes.size(); ++i) {
    json["photographs"].push_back(JsonOf(report.work.tasks[i], report.outcomes[i]));
  }
  json["unreadable"] = report.failures;
  PrintIndented(json);
}

void PrintDryRun(const BatchReport& report) {
  for (std::size_t i = 0; i < report.outcomes.size(); ++i) {
    const BatchTask& task = report.work.tasks[i];
    const BatchOutcome& outcome = report.outcomes[i];
    if (outcome.state == BatchState::kPending) {
      std::cout << Printable(task.input) << " -> " << Printable(task.output) << '\n';
    } else if (outcome.state == BatchState::kSkipped) {
      std::cout << Printable(task.input) << ": " << outcome.reason << '\n';
    }
  }
}

void ReportBatch(const BatchReport& report) {
  for (const std::string& failure : report.failures) Report(failure);
  for (std::size_t i = 0; i < report.outcomes.size(); ++i) {
    ReportPhotograph(report.work.tasks[i], report.outcomes[i], report.reporting);
  }
  if (report.full_disk) Report(StopOf(report));
  if (report.reporting.quiet) return;
  Report(report.reporting.dry_run ? DryRunSummaryOf(report) : SummaryOf(report));
}

}  // namespace lumvik
