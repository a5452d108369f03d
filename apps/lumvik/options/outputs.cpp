#include "options/outputs.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "files/file_paths.h"
#include "lumvik_host.hpp"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

void RequireReplaceableImage(const std::string& path, const fs::path& target) {
  if (!fs::exists(target) || api::ReadMark(path)) return;
  throw api::Error(LUMVIK_HOST_EXISTS, "'" + path +
                                           "' exists and was not written by lumvik, or was changed since; "
                                           "--overwrite replaces it");
}

// ASCII letters only.
std::string WithoutCase(const fs::path& path) {
  std::string name = path.u8string();
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return name;
}

void RequireDifferent(const Output& output, const fs::path& target, const Output& other,
                      const fs::path& other_target) {
  std::error_code missing;
  const bool is_same = target == other_target || fs::equivalent(target, other_target, missing);
  // Whether they are the same file depends on the file system.
  const bool differs_in_case = WithoutCase(target) == WithoutCase(other_target);
  if (!is_same && !differs_in_case) return;
  throw CLI::ValidationError(
      output.option, "'" + output.path + "' " +
                         (is_same ? "is also the file of " : "differs from the file of ") + other.option +
                         (is_same ? "" : " in case only"));
}

}  // namespace

void CheckOutputs(const std::vector<Output>& outputs, const std::string& input, bool overwrite) {
  std::vector<fs::path> targets;
  for (const Output& output : outputs) {
    targets.push_back(fs::weakly_canonical(ResolveOutput(output.path, input)));
    for (std::size_t i = 0; i + 1 < targets.size(); ++i) {
      RequireDifferent(output, targets.back(), outputs[i], targets[i]);
    }
  }
  for (std::size_t i = 0; i < outputs.size() && !overwrite; ++i) {
    if (outputs[i].kind == OutputKind::kImage) RequireReplaceableImage(outputs[i].path, targets[i]);
  }
}

void WriteOutput(const std::string& path, const std::function<void()>& write) {
  try {
    write();
  } catch (const api::Error& error) {
    if (error.status() != LUMVIK_HOST_DISK_FULL) throw;
    const fs::path folder = fs::weakly_canonical(fs::u8path(path)).parent_path();
    throw api::Error(error.status(), std::string(error.what()) + "; the folder '" + folder.u8string() +
                                         "' has no space for it");
  }
}

}  // namespace lumvik
