#include "files/safe_file.h"

#include <fstream>
#include <random>
#include <system_error>

#include "base/failure.h"
#include "files/file_reading.h"
#include "files/intact_mark.h"

namespace lumvik::host {
namespace {

namespace fs = std::filesystem;

constexpr int kMaxLinks = 40;  // the kernel's own limit

Failure Unwritable(Status status, const std::string& path, const std::string& why) {
  return {status, "cannot write '" + path + "': " + why};
}

Failure Existing(const std::string& path, Overwrite overwrite) {
  return Unwritable(LUMVIK_HOST_EXISTS, path,
                    overwrite == Overwrite::kMarked
                        ? "the file exists and was not written by this program, or was changed since"
                        : "the file exists");
}

fs::path FollowLinks(const std::string& path) {
  if (path.empty()) throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "the path is empty");
  std::error_code error;
  fs::path target = fs::absolute(PathOf(path), error);
  for (int followed = 0; !error && followed <= kMaxLinks; ++followed) {
    const fs::file_status status = fs::symlink_status(target, error);
    if (status.type() == fs::file_type::not_found || (!error && !fs::is_symlink(status))) return target;
    if (!error) target = target.parent_path() / fs::read_symlink(target, error);
  }
  if (error) throw FileFailure("write", path, error);
  throw Unwritable(LUMVIK_HOST_INVALID_ARGUMENT, path, "too many levels of symbolic links");
}

void CheckFolder(const std::string& path, const fs::path& folder) {
  std::error_code error;
  const fs::file_status status = fs::status(folder, error);
  if (status.type() == fs::file_type::not_found) {
    throw Unwritable(LUMVIK_HOST_NOT_FOUND, path, "there is no folder '" + folder.u8string() + "'");
  }
  if (error) throw FileFailure("write into the folder", folder.u8string(), error);
  if (!fs::is_directory(status)) {
    throw Unwritable(LUMVIK_HOST_INVALID_ARGUMENT, path, "'" + folder.u8string() + "' is not a folder");
  }
}

// Returns whether the target exists. Its folder must.
bool CheckTarget(const std::string& path, const fs::path& target, Overwrite overwrite) {
  CheckFolder(path, target.parent_path());
  std::error_code error;
  const fs::file_status status = fs::status(target, error);
  if (status.type() == fs::file_type::not_found) return false;
  if (error) throw FileFailure("write", path, error);
  if (fs::is_directory(status)) throw Unwritable(LUMVIK_HOST_INVALID_ARGUMENT, path, "it is a folder");
  if (!fs::is_regular_file(status)) {
    throw Unwritable(LUMVIK_HOST_INVALID_ARGUMENT, path, "it is not a regular file");
  }
  if (overwrite == Overwrite::kNo) throw Existing(path, overwrite);
  if (overwrite == Overwrite::kMarked && !IntactMarkOf(target.u8string())) throw Existing(path, overwrite);
  // Replacing the file by renaming needs no write permission on it, so check by opening it unchanged.
  if (!std::ofstream(target, std::ios::app)) throw FileFailure("write", path, LastSystemError());
  return true;
}

fs::path ReserveFile(const fs::path& folder, const fs::path& extension) {
  std::random_device random;
  for (;;) {
    fs::path path = folder / (".lumvik-" + std::to_string(random()));
    path += extension;
    const std::error_code error = CreateNewFile(path);
    if (!error) return path;
    if (error != std::errc::file_exists) throw FileFailure("write into the folder", folder.u8string(), error);
  }
}

}  // namespace

SafeFile::SafeFile(const std::string& path, Overwrite overwrite, const char* extension)
    : shown_(path),
      overwrite_(overwrite),
      target_(FollowLinks(path)),
      target_exists_(CheckTarget(path, target_, overwrite)),
      temporary_(ReserveFile(target_.parent_path(), extension != nullptr ? extension : target_.extension())) {
}

SafeFile::~SafeFile() {
  std::error_code ignored;  // gone after a Commit
  fs::remove(temporary_, ignored);
}

void SafeFile::Write(std::string_view bytes) const {
  Fill(bytes, WriteMode::kReplace);
}

void SafeFile::WriteWith(const std::function<bool(const std::string& temporary_path)>& writer) const {
  bool is_written = false;
  WithoutFileSizeSignal([&] { is_written = writer(TemporaryPath()); });
  if (is_written) return;
  constexpr std::size_t kMoreThanABlock = 1 << 16;
  Fill(std::string(kMoreThanABlock, '\0'), WriteMode::kAppend);
  throw Unwritable(LUMVIK_HOST_IO_ERROR, shown_, "the reason is unknown");
}

void SafeFile::Fill(std::string_view bytes, WriteMode mode) const {
  if (const std::error_code error = FillFile(temporary_, bytes, mode))
    throw FileFailure("write", shown_, error);
}

bool SafeFile::MayReplaceTarget() const {
  std::error_code ignored;
  return overwrite_ == Overwrite::kYes || (overwrite_ == Overwrite::kMarked && target_exists_ &&
                                           fs::exists(target_, ignored) && IntactMarkOf(target_.u8string()));
}

void SafeFile::Commit() {
  std::error_code error;
  if (fs::exists(target_, error)) fs::permissions(temporary_, fs::status(target_).permissions(), error);
  if (!error) error = RenameFile(temporary_, target_, MayReplaceTarget());
  if (error == std::errc::file_exists) throw Existing(shown_, overwrite_);
  if (error) throw FileFailure("write", shown_, error);
}

void WriteSafely(const std::string& path, std::string_view bytes, Overwrite overwrite) {
  SafeFile file(path, overwrite);
  file.Write(bytes);
  file.Commit();
}

}  // namespace lumvik::host
