#include "batch/work_folders.h"

#include <optional>
#include <utility>

namespace lumvik {
namespace {

namespace fs = std::filesystem;

std::string KeyOf(const fs::path& target) {
  return fs::canonical(target.parent_path()).string();
}

}  // namespace

std::unique_ptr<StagedOutput> WorkFolders::Claim(const fs::path& target, std::size_t id) {
  std::unique_ptr<WorkFolder>& folder = folders_[KeyOf(target)];
  if (!folder) folder = std::make_unique<WorkFolder>(target.parent_path());
  std::optional<LockFile> claim = folder->Claim(target.filename().string());
  if (!claim) return nullptr;
  return std::make_unique<StagedOutput>(*folder, target, id, std::move(*claim));
}

int WorkFolders::ClaimantOf(const fs::path& target) const {
  const WorkFolder* folder = Find(target);
  return folder == nullptr ? 0 : folder->ClaimantOf(target.filename().string());
}

bool WorkFolders::HasLocks(const fs::path& target) const {
  const WorkFolder* folder = Find(target);
  return folder == nullptr || folder->HasLocks();
}

const WorkFolder* WorkFolders::Find(const fs::path& target) const {
  const auto folder = folders_.find(KeyOf(target));
  return folder == folders_.end() ? nullptr : folder->second.get();
}

}  // namespace lumvik
