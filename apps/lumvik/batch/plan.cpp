#include "batch/plan.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <system_error>

#include "batch/names.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

// False when a time is unknown, so that the photograph is developed again.
bool IsNewer(const fs::path& file, const fs::path& than) {
  std::error_code error;
  const auto time = fs::last_write_time(file, error);
  if (error) return false;
  const auto other = fs::last_write_time(than, error);
  return !error && time > other;
}

bool IsWhole(const std::string& photograph) {
  try {
    return api::CheckFile(photograph).is_whole != 0;
  } catch (const api::Error&) {
    return false;
  }
}

}  // namespace

std::vector<BatchTask> PlanBatch(const BatchInputs& inputs, const std::string& output_folder,
                                 const std::string& name_pattern, lumvik_host_format format) {
  const std::vector<std::string> names = NamesByPattern(name_pattern, inputs.photographs, format);
  std::vector<BatchTask> tasks;
  std::map<std::string, std::string> input_of;  // by output
  for (std::size_t i = 0; i < names.size(); ++i) {
    const std::string& input = inputs.photographs[i].path;
    const fs::path output = fs::path(output_folder) / names[i];
    const auto [other, is_new] = input_of.emplace(output.string(), input);
    if (!is_new) {
      throw std::runtime_error("'" + other->second + "' and '" + input + "' would both be written to '" +
                               output.string() + "'; use {n} or {folder} in --name to keep them apart");
    }
    if (inputs.canonical_paths.count(CanonicalPath(output).string()) != 0) {
      throw std::runtime_error("cannot write '" + output.string() + "': it is one of the input photographs");
    }
    tasks.push_back({input, output.string()});
  }
  return tasks;
}

bool IsDone(const BatchTask& task, const std::vector<std::string>& settings) {
  return IsNewer(task.output, task.input) &&
         std::all_of(settings.begin(), settings.end(),
                     [&](const std::string& file) { return IsNewer(task.output, file); }) &&
         IsWhole(task.output);
}

}  // namespace lumvik
