#include "options/outputs.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "files/file_paths.h"
#include "files/lower_extension.h"
#include "lumvik_host.hpp"
#include "options/overwrite.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

void RequireReplaceableImage(const std::string& path, const fs::path& target) {
  if (!fs::exists(target) || api::ReadMark(path)) return;
  throw api::Error(LUMVIK_HOST_EXISTS, RefusalOfForeign(path));
}

void RequireDifferent(const Output& output, const fs::path& target, const Output& other,
                      const fs::path& other_target) {
  std::error_code missing;
  const bool is_same = target == other_target || fs::equivalent(target, other_target, missing);
  // Whether they are the same file depends on the file system.
  const bool differs_in_case = LowerAscii(target.u8string()) == LowerAscii(other_target.u8string());
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
