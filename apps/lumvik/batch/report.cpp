#include "batch/report.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <iostream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "terminal/json.h"
#include "terminal/reported_failure.h"

namespace lumvik {
namespace {

const char* NameOf(BatchState state) {
  switch (state) {
    case BatchState::kSkipped:
      return "skipped";
    case BatchState::kDeveloped:
      return "developed";
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

nlohmann::ordered_json JsonOf(const BatchTask& task, const BatchOutcome& outcome) {
  nlohmann::ordered_json json = {
      {"input", task.input}, {"output", task.output}, {"status", NameOf(outcome.state)}};
  if (outcome.state == BatchState::kDeveloped) {
    json["width"] = outcome.width;
    json["height"] = outcome.height;
    json["seconds"] = outcome.seconds;
  }
  if (outcome.state == BatchState::kFailed) json["error"] = outcome.failure;
  return json;
}

}  // namespace

bool HasFailures(const BatchReport& report) {
  return !report.failures.empty() || Count(report, BatchState::kFailed) > 0;
}

void PrintBatchJson(const BatchReport& report) {
  nlohmann::ordered_json json = {
      {"interrupted", report.interrupted}, {"jobs", report.work.workers}, {"seconds", report.seconds}};
  for (const BatchState state :
       {BatchState::kDeveloped, BatchState::kSkipped, BatchState::kFailed, BatchState::kPending}) {
    json[NameOf(state)] = Count(report, state);
  }
  json["photographs"] = nlohmann::ordered_json::array();
  for (std::size_t i = 0; i < report.outcomes.size(); ++i) {
    json["photographs"].push_back(JsonOf(report.work.tasks[i], report.outcomes[i]));
  }
  json["unreadable"] = report.failures;
  PrintIndented(json);
}

void ReportBatch(const BatchReport& report) {
  for (const std::string& failure : report.failures) Report(failure);
  for (const BatchOutcome& outcome : report.outcomes) {
    if (outcome.state == BatchState::kFailed) Report(outcome.failure);
  }
  std::ostringstream text;
  if (report.interrupted) text << "interrupted: ";
  text << Count(report, BatchState::kDeveloped) << " developed";
  if (const auto skipped = Count(report, BatchState::kSkipped)) text << ", " << skipped << " skipped";
  if (const auto failed = Count(report, BatchState::kFailed)) text << ", " << failed << " failed";
  if (const auto pending = Count(report, BatchState::kPending)) {
    text << ", " << pending << " not started or not finished; continue with --resume";
  }
  text << " (" << std::fixed << std::setprecision(1) << report.seconds << " s)";
  Report(text.str());
}

}  // namespace lumvik
