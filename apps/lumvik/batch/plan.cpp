#include "batch/plan.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <set>

#include "files/lower_extension.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

bool HaveDifferentExtensions(const BatchClash& clash) {
  std::set<std::string> extensions;
  return std::all_of(clash.inputs.begin(), clash.inputs.end(), [&](const std::string& input) {
    return extensions.insert(LowerExtension(input)).second;
  });
}

std::vector<BatchClash> ClashesOf(const std::vector<BatchTask>& tasks) {
  std::map<std::string, std::vector<std::string>> inputs_of;  // by output
  for (const BatchTask& task : tasks) inputs_of[task.output].push_back(task.input);
  std::vector<BatchClash> clashes;
  for (const auto& [output, inputs] : inputs_of) {
    if (inputs.size() > 1) clashes.push_back({output, inputs});
  }
  return clashes;
}

}  // namespace

BatchPlan PlanBatch(const BatchInputs& inputs, const std::vector<std::string>& names,
                    const std::string& output_folder, const Shard& shard) {
  std::vector<BatchTask> tasks;
  for (std::size_t i = 0; i < names.size(); ++i) {
    tasks.push_back({inputs.photographs[i].path, (fs::path(output_folder) / names[i]).string()});
  }
  BatchPlan plan;
  plan.clashes = ClashesOf(tasks);
  plan.extensions_differ = std::all_of(plan.clashes.begin(), plan.clashes.end(), HaveDifferentExtensions);
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (IsIn(shard, inputs.photographs[i].relative_path)) plan.tasks.push_back(tasks[i]);
  }
  return plan;
}

std::string MessageOf(const BatchClash& clash) {
  std::string message;
  for (std::size_t i = 0; i < clash.inputs.size(); ++i) {
    if (i > 0) message += i + 1 == clash.inputs.size() ? " and " : ", ";
    message += "'" + clash.inputs[i] + "'";
  }
  return message + " would " + (clash.inputs.size() == 2 ? "both" : "all") + " be written to '" +
         clash.output + "'";
}

}  // namespace lumvik
