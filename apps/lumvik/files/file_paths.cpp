#include "files/file_paths.h"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace lumvik {
namespace {

namespace fs = std::filesystem;

constexpr int kMaxLinks = 40;  // the kernel's own limit

std::runtime_error Failure(const std::string& what, const fs::path& path, const std::string& why) {
  return std::runtime_error(what + " '" + path.string() + "': " + why);
}

std::string LastSystemError() {
  return std::generic_category().message(errno);
}

// The status of `path`, links followed. Throws when it is unknown, not when the file is missing.
fs::file_status StatusOf(const std::string& what, const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::none) throw Failure(what, path, error.message());
  return status;
}

fs::path FollowLinks(const fs::path& output) {
  fs::path target = fs::absolute(output);
  for (int followed = 0; followed <= kMaxLinks; ++followed) {
    std::error_code error;
    const fs::file_status status = fs::symlink_status(target, error);
    if (status.type() == fs::file_type::none) throw Failure("cannot write", output, error.message());
    if (!fs::is_symlink(status)) return target;
    target = target.parent_path() / fs::read_symlink(target);
  }
  throw Failure("cannot write", output, "too many levels of symbolic links");
}

}  // namespace

void RequireReadable(const std::string& utf8_input) {
  const fs::path input = fs::u8path(utf8_input);
  const fs::file_status status = StatusOf("cannot read", input);
  if (!fs::exists(status)) throw Failure("cannot read", input, "there is no such file");
  if (fs::is_directory(status)) throw Failure("cannot read", input, "it is a folder");
  // A pipe or a device could block the decoder forever.
  if (!fs::is_regular_file(status)) throw Failure("cannot read", input, "it is not a regular file");
  if (!std::ifstream(input)) throw Failure("cannot read", input, LastSystemError());
}

fs::path ResolveOutput(const std::string& utf8_output, const std::string& utf8_input) {
  const fs::path output = fs::u8path(utf8_output);
  fs::path target = FollowLinks(output);
  const fs::path folder = target.parent_path();
  const fs::file_status folder_status = StatusOf("cannot write into the folder", folder);
  if (!fs::exists(folder_status)) {
    throw Failure("cannot write", output, "there is no folder '" + folder.string() + "'");
  }
  if (!fs::is_directory(folder_status)) {
    throw Failure("cannot write", output, "'" + folder.string() + "' is not a folder");
  }

  const fs::file_status status = StatusOf("cannot write", target);
  if (!fs::exists(status)) return target;
  if (fs::is_directory(status)) throw Failure("cannot write", output, "it is a folder");
  if (!fs::is_regular_file(status)) throw Failure("cannot write", output, "it is not a regular file");
  std::error_code missing;  // the photograph, if it comes from standard input
  if (fs::equivalent(target, fs::u8path(utf8_input), missing)) {
    throw Failure("cannot write", output, "it is the input photograph");
  }
  // Replacing the file by renaming needs no write permission on it, so check by opening it unchanged.
  if (!std::ofstream(target, std::ios::app)) throw Failure("cannot write", output, LastSystemError());
  return target;
}

void MakeFolder(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) throw Failure("cannot create the folder", folder, error.message());
}

}  // namespace lumvik
