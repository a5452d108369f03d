#include "batch/worker_report.h"

#include <nlohmann/json.hpp>
#include <sstream>

namespace lumvik {
namespace {

constexpr char kWidthKey[] = "width";
constexpr char kHeightKey[] = "height";

bool IsReport(const nlohmann::json& json) {
  return json.is_object() && json.value(kWidthKey, nlohmann::json()).is_number_integer() &&
         json.value(kHeightKey, nlohmann::json()).is_number_integer();
}

}  // namespace

std::string LineOf(const WorkerReport& report) {
  return nlohmann::ordered_json{{kWidthKey, report.width}, {kHeightKey, report.height}}.dump();
}

std::optional<WorkerReport> FindWorkerReport(const std::string& output) {
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    const auto json = nlohmann::json::parse(line, nullptr, false);
    if (IsReport(json)) return WorkerReport{json[kWidthKey].get<int>(), json[kHeightKey].get<int>()};
  }
  return std::nullopt;
}

}  // namespace lumvik
