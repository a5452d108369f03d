#include "develop/staged_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <random>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace lumvik {
namespace {

namespace fs = std::filesystem;

// Creates a file with a new name in the folder and returns its path.
std::string ReserveFile(const fs::path& folder, const std::string& extension) {
  std::random_device random;
  for (;;) {
    std::string path = (folder / (".lumvik-" + std::to_string(random()) + extension)).string();
    constexpr int kNewFileMode = 0666;
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, kNewFileMode);
    if (file >= 0) {
      ::close(file);
      return path;
    }
    if (errno != EEXIST) {
      throw std::runtime_error("cannot write into the folder '" + folder.string() +
                               "': " + std::generic_category().message(errno));
    }
  }
}

}  // namespace

void MoveIntoPlace(const fs::path& complete, const fs::path& target) {
  std::error_code error;
  if (fs::exists(target, error)) fs::permissions(complete, fs::status(target).permissions(), error);
  if (!error) fs::rename(complete, target, error);
  if (error) throw std::runtime_error("cannot write '" + target.string() + "': " + error.message());
}

StagedFile::StagedFile(fs::path target, const std::string& extension)
    : target_(std::move(target)), temporary_path_(ReserveFile(target_.parent_path(), extension)) {}

StagedFile::~StagedFile() {
  std::error_code ignored;  // gone after a Commit
  fs::remove(fs::u8path(temporary_path_), ignored);
}

void StagedFile::Commit() {
  MoveIntoPlace(fs::u8path(temporary_path_), target_);
}

}  // namespace lumvik
