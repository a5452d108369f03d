#include "batch/inputs.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "batch/matching_files.h"
#include "files/photograph_walk.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

bool LiesIn(const fs::path& canonical, const fs::path& folder) {
  return std::mismatch(folder.begin(), folder.end(), canonical.begin(), canonical.end()).first ==
         folder.end();
}

class Search {
 public:
  explicit Search(const std::string& output_folder) : output_(CanonicalPath(output_folder)) {}

  void Add(const std::string& argument) {
    std::error_code error;
    const fs::file_status status = fs::status(argument, error);
    if (fs::exists(status)) return AddExisting(argument);
    const std::vector<std::string> matches = MatchingFiles(argument);
    if (matches.empty()) {
      const bool is_missing = status.type() == fs::file_type::not_found;
      inputs_.failures.push_back("cannot read '" + argument +
                                 "': " + (is_missing ? "there is no such file" : error.message()));
    }
    for (const std::string& match : matches) AddExisting(match);
  }

  BatchInputs Take() { return std::move(inputs_); }

 private:
  void AddExisting(const std::string& path) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) return AddFolder(path);
    const fs::path canonical = CanonicalPath(path);
    AddPhotograph(path, canonical, CanonicalPath(fs::absolute(path).parent_path()).filename());
  }

  void AddFolder(const std::string& folder) {
    FoundPhotographs found;
    try {
      found = FindPhotographs(folder);
    } catch (const std::runtime_error& error) {
      inputs_.failures.emplace_back(error.what());
    }
    const fs::path root = CanonicalPath(folder);
    for (const std::string& path : found.paths) {
      const fs::path canonical = CanonicalPath(path);
      if (LiesIn(canonical, output_) && !LiesIn(root, output_)) continue;
      AddPhotograph(path, canonical, root.filename() / canonical.parent_path().lexically_relative(root));
    }
    inputs_.failures.insert(inputs_.failures.end(), found.failures.begin(), found.failures.end());
  }

  void AddPhotograph(const std::string& path, const fs::path& canonical, const fs::path& folder) {
    if (!inputs_.canonical_paths.insert(canonical.string()).second) return;
    inputs_.photographs.push_back({path, folder.lexically_normal().string()});
  }

  const fs::path output_;
  BatchInputs inputs_;
};

}  // namespace

fs::path CanonicalPath(const fs::path& path) {
  std::error_code error;
  fs::path canonical = fs::weakly_canonical(path, error);
  if (error) canonical = fs::absolute(path).lexically_normal();
  return canonical.has_filename() ? canonical : canonical.parent_path();
}

BatchInputs FindBatchInputs(const std::vector<std::string>& arguments, const std::string& output_folder) {
  Search search(output_folder);
  for (const std::string& argument : arguments) search.Add(argument);
  return search.Take();
}

}  // namespace lumvik
