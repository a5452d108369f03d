#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "batch/staged_output.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void ThrowSystemError(const fs::path& path) {
  throw std::system_error(errno, std::generic_category(), path.string());
}

// For file systems that cannot rename without replacing. False if the target exists.
bool LinkAsTarget(const fs::path& staged, const fs::path& target) {
  if (link(staged.c_str(), target.c_str()) == 0) return true;
  if (errno == EEXIST) return false;
  if (errno != EPERM && errno != EOPNOTSUPP && errno != ENOSYS) ThrowSystemError(target);
  // Nor are there hard links, as on exFAT: only other runs of this command are kept from interfering.
  if (fs::exists(fs::symlink_status(target))) return false;
  fs::rename(staged, target);
  return true;
}

}  // namespace

StagedOutput::StagedOutput(const WorkFolder& work, fs::path target, std::size_t id, LockFile claim)
    : target_(std::move(target)), folder_(work.Staging() / std::to_string(id)), claim_(std::move(claim)) {
  fs::create_directory(folder_);
}

StagedOutput::~StagedOutput() {
  std::error_code ignored;
  fs::remove_all(folder_, ignored);
}

bool StagedOutput::MoveToAbsentTarget() const {
  const fs::path staged = Path();
  if (renameat2(AT_FDCWD, staged.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) == 0) return true;
  if (errno == EEXIST) return false;
  if (errno != EINVAL && errno != ENOSYS && errno != EOPNOTSUPP) ThrowSystemError(target_);
  return LinkAsTarget(staged, target_);
}

void StagedOutput::ReplaceTarget() const {
  const fs::file_status existing = fs::status(target_);
  if (fs::exists(existing)) fs::permissions(Path(), existing.permissions());
  fs::rename(Path(), target_);
}

std::string StagedOutput::InTermsOfTarget(std::string text) const {
  const std::string step = folder_.lexically_relative(target_.parent_path()).string();
  for (const std::string& part : {step + '/', '/' + step}) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part)) {
      text.erase(at, part.size());
    }
  }
  return text;
}

}  // namespace lumvik
