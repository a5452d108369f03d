#include "batch/worker_report.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <sstream>

namespace lumvik {
namespace {

using ReportJson = nlohmann::ordered_json;

constexpr char kWidthKey[] = "width";
constexpr char kHeightKey[] = "height";
constexpr char kDamageKey[] = "damage";
constexpr char kWarningsKey[] = "warnings";

bool AreTexts(const ReportJson& json) {
  return json.is_array() &&
         std::all_of(json.begin(), json.end(), [](const ReportJson& item) { return item.is_string(); });
}

bool IsReport(const ReportJson& json) {
  return json.is_object() && json.value(kWidthKey, ReportJson()).is_number_integer() &&
         json.value(kHeightKey, ReportJson()).is_number_integer() &&
         json.value(kDamageKey, ReportJson("")).is_string() &&
         AreTexts(json.value(kWarningsKey, ReportJson::array()));
}

}  // namespace

std::string LineOf(const WorkerReport& report) {
  ReportJson json = {{kWidthKey, report.width}, {kHeightKey, report.height}};
  if (!report.damage.empty()) json[kDamageKey] = report.damage;
  if (!report.warnings.empty()) json[kWarningsKey] = report.warnings;
  return json.dump(-1, ' ', false, ReportJson::error_handler_t::replace);
}

std::optional<WorkerReport> FindWorkerReport(const std::string& output) {
  std::istringstream lines(output);
  for (std::string line; std::getline(lines, line);) {
    const ReportJson json = ReportJson::parse(line, nullptr, false);
    if (!IsReport(json)) continue;
    return WorkerReport{json[kWidthKey].get<int>(), json[kHeightKey].get<int>(),
                        json.value(kDamageKey, std::string()),
                        json.value(kWarningsKey, std::vector<std::string>())};
  }
  return std::nullopt;
}

}  // namespace lumvik
