#include "batch/inputs.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "batch/matching_files.h"
#include "files/mark.h"
#include "files/photograph_walk.h"
#include "terminal/standard_streams.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

bool LiesIn(const fs::path& canonical, const fs::path& folder) {
  return std::mismatch(folder.begin(), folder.end(), canonical.begin(), canonical.end()).first ==
         folder.end();
}

enum class Origin { kNamed, kFound };

class Search {
 public:
  explicit Search(const std::string& output_folder) : output_(CanonicalPath(output_folder)) {}

  void Add(const std::string& argument) {
    std::error_code error;
    const fs::file_status status = fs::status(argument, error);
    if (fs::exists(status)) return AddExisting(argument, Origin::kNamed);
    const std::vector<std::string> matches = MatchingFiles(argument);
    if (matches.empty()) AddMissing(argument, status, error);
    for (const std::string& match : matches) AddExisting(match, Origin::kFound);
  }

  void AddListed(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::exists(status)) return AddExisting(path, Origin::kNamed);
    AddMissing(path, status, error);
  }

  BatchInputs Take() { return std::move(inputs_); }

 private:
  void AddMissing(const std::string& path, const fs::file_status& status, const std::error_code& error) {
    const bool is_missing = status.type() == fs::file_type::not_found;
    inputs_.failures.push_back("cannot read '" + path +
                               "': " + (is_missing ? "there is no such file" : error.message()));
  }

  void AddExisting(const std::string& name, Origin origin) {
    const std::string path = IsStandardStream(name) ? "./" + name : name;  // here it is the name of a file
    std::error_code ignored;
    const bool is_folder = fs::is_directory(path, ignored);
    if (origin == Origin::kFound && IsNoPhotograph(path, is_folder)) return;
    if (is_folder) return AddFolder(path);
    const fs::path canonical = CanonicalPath(path);
    const fs::path folder = CanonicalPath(fs::absolute(path).parent_path()).filename();
    AddPhotograph({path, folder.string(), fs::path(path).filename().string()}, canonical, origin);
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
      const fs::path relative = canonical.lexically_relative(root);
      AddPhotograph(
          {path, (root.filename() / relative.parent_path()).lexically_normal().string(), relative.string()},
          canonical, Origin::kFound);
    }
    inputs_.failures.insert(inputs_.failures.end(), found.failures.begin(), found.failures.end());
  }

  void AddPhotograph(const BatchInput& photograph, const fs::path& canonical, Origin origin) {
    if (!known_.insert(canonical.string()).second) return;
    if (IsOwnOutput(canonical)) {
      if (origin == Origin::kNamed) inputs_.own_outputs.push_back(photograph.path);
      return;
    }
    inputs_.canonical_paths.insert(canonical.string());
    inputs_.photographs.push_back(photograph);
  }

  bool IsOwnOutput(const fs::path& canonical) const {
    if (!LiesIn(canonical, output_)) return false;
    try {
      return ReadMark(canonical.string()).has_value();
    } catch (const std::runtime_error&) {
      return false;  // no image
    }
  }

  const fs::path output_;
  std::set<std::string> known_;
  BatchInputs inputs_;
};

}  // namespace

fs::path CanonicalPath(const fs::path& path) {
  std::error_code error;
  fs::path canonical = fs::weakly_canonical(path, error);
  if (error) canonical = fs::absolute(path).lexically_normal();
  return canonical.has_filename() ? canonical : canonical.parent_path();
}

BatchInputs FindBatchInputs(const BatchArguments& arguments, const std::string& output_folder) {
  Search search(output_folder);
  for (const std::string& argument : arguments.inputs) search.Add(argument);
  for (const std::string& path : arguments.listed) search.AddListed(path);
  return search.Take();
}

}  // namespace lumvik
