#include "batch/work_folder.h"

#define XXH_INLINE_ALL
#include <xxhash.h>

#include <cstdint>
#include <iomanip>
#include <random>
#include <sstream>
#include <system_error>
#include <utility>

namespace lumvik {
namespace {

namespace fs = std::filesystem;

constexpr char kRunStart[] = "run-";
constexpr char kLockExtension[] = ".lock";
constexpr char kClaimExtension[] = ".claim";
constexpr int kAttempts = 100;

std::string Hex(std::uint64_t number) {
  std::ostringstream text;
  text << std::hex << std::setfill('0') << std::setw(16) << number;
  return text.str();
}

std::string RandomName() {
  std::random_device random;
  return kRunStart + Hex((std::uint64_t{random()} << 32U) | random());
}

fs::path LockOf(fs::path staging) {
  return staging += kLockExtension;
}

// Removes a staging folder, or leaves its lock file so that the next run tries again.
void RemoveStaging(const fs::path& staging, LockFile& lock) {
  std::error_code error;
  fs::remove_all(staging, error);
  if (error) lock.Keep();
}

// Removes the file and what it stands for if its owner is gone.
void RemoveLeftover(const fs::path& file) {
  std::optional<LockFile> lock = LockFile::TakeExisting(file);
  if (!lock) return;
  if (!lock->IsExclusive()) return lock->Keep();
  if (file.extension() == kLockExtension) RemoveStaging(fs::path(file).replace_extension(), *lock);
}

// Removes what killed runs left in the work folder.
void RemoveLeftovers(const fs::path& work_folder) {
  std::error_code error;
  for (fs::directory_iterator entry(work_folder, error), end; !error && entry != end;
       entry.increment(error)) {
    const fs::path extension = entry->path().extension();
    if (extension != kLockExtension && extension != kClaimExtension) continue;
    try {
      RemoveLeftover(entry->path());
    } catch (const std::system_error&) {
      continue;  // of another user
    }
  }
}

}  // namespace

void CleanWorkFolder(const fs::path& target_folder) {
  const fs::path work_folder = target_folder / kWorkFolderName;
  RemoveLeftovers(work_folder);
  std::error_code ignored;
  fs::remove(work_folder, ignored);  // fails unless empty
}

WorkFolder::WorkFolder(const fs::path& target_folder) : folder_(target_folder / kWorkFolderName) {
  try {
    // Another run may remove the empty work folder at any moment.
    for (int attempt = 0; !Begin(); ++attempt) {
      if (attempt == kAttempts) {
        throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory), folder_.string());
      }
    }
  } catch (...) {
    End();
    throw;
  }
  RemoveLeftovers(folder_);
}

WorkFolder::~WorkFolder() {
  RemoveStaging(staging_, *lock_);
  End();
}

void WorkFolder::End() {
  lock_.reset();
  CleanWorkFolder(folder_.parent_path());
}

bool WorkFolder::Begin() {
  std::error_code error;
  fs::create_directory(folder_, error);  // an error also if another run removes it right away
  if (error && error != std::errc::file_exists) throw std::system_error(error, folder_.string());
  staging_ = folder_ / RandomName();
  try {
    if (std::optional<LockFile> lock = LockFile::Take(LockOf(staging_))) lock_.emplace(std::move(*lock));
  } catch (const std::system_error& failure) {
    if (failure.code() != std::errc::no_such_file_or_directory) throw;
  }
  if (!lock_) return false;
  fs::create_directory(staging_);
  return true;
}

std::optional<LockFile> WorkFolder::Claim(const std::string& file_name) const {
  return LockFile::Take(ClaimPath(file_name));
}

int WorkFolder::ClaimantOf(const std::string& file_name) const {
  return HolderOf(ClaimPath(file_name));
}

// The name itself plus an extension might be too long.
fs::path WorkFolder::ClaimPath(const std::string& file_name) const {
  return folder_ / (Hex(XXH3_64bits(file_name.data(), file_name.size())) + kClaimExtension);
}

}  // namespace lumvik
