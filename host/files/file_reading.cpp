#include "files/file_reading.h"

#include <algorithm>
#include <fstream>
#include <system_error>

#include "base/failure.h"

namespace lumvik::host {
namespace {

namespace fs = std::filesystem;

Failure Unreadable(Status status, const std::string& path, const std::string& why) {
  return {status, "cannot read '" + path + "': " + why};
}

std::ifstream OpenExisting(const std::string& path) {
  std::ifstream file(PathOf(path), std::ios::binary);
  if (!file) throw FileFailure("read", path, LastSystemError());
  return file;
}

std::ifstream OpenReadable(const std::string& path) {
  RequireReadable(path);
  return OpenExisting(path);
}

// The file is then at its beginning.
std::uintmax_t SizeOfOpen(std::ifstream& file) {
  file.seekg(0, std::ios::end);
  const auto size = static_cast<std::uintmax_t>(std::max<std::streamoff>(file.tellg(), 0));
  file.seekg(0);
  return size;
}

// At most `count` bytes.
std::string ReadBytes(std::ifstream& file, const std::string& path, std::size_t count) {
  std::string bytes(count, '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(count));
  if (file.bad()) throw FileFailure("read", path, LastSystemError());
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

}  // namespace

std::filesystem::path PathOf(const std::string& utf8) {
  try {
    return fs::u8path(utf8);
  } catch (const std::system_error&) {
    throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "the path '" + utf8 + "' is not UTF-8");
  }
}

void RequireReadable(const std::string& path) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(path), error);
  if (status.type() == fs::file_type::not_found) {
    throw Unreadable(LUMVIK_HOST_NOT_FOUND, path, "there is no such file");
  }
  if (error) throw FileFailure("read", path, error);
  if (fs::is_directory(status)) throw Unreadable(LUMVIK_HOST_INVALID_ARGUMENT, path, "it is a folder");
  if (!fs::is_regular_file(status)) {
    throw Unreadable(LUMVIK_HOST_INVALID_ARGUMENT, path, "it is not a regular file");
  }
  OpenExisting(path);
}

void RequireContent(const std::string& path, const std::string& shown) {
  RequireReadable(path);
  std::error_code error;
  const std::uintmax_t size = fs::file_size(PathOf(path), error);
  if (error) throw FileFailure("read", path, error);
  if (size == 0) throw Failure(LUMVIK_HOST_NOT_A_PHOTOGRAPH, shown + " is empty");
}

std::string ReadBeginning(const std::string& path, std::size_t count) {
  return ReadPart(path, 0, count);
}

std::string ReadPart(const std::string& path, std::uint64_t offset, std::size_t count) {
  std::ifstream file = OpenReadable(path);
  const std::uintmax_t size = SizeOfOpen(file);
  if (offset >= size) return {};
  file.seekg(static_cast<std::streamoff>(offset));
  return ReadBytes(file, path, static_cast<std::size_t>(std::min<std::uintmax_t>(count, size - offset)));
}

std::string ReadEnds(const std::string& path, std::size_t count) {
  std::ifstream file = OpenReadable(path);
  const std::uintmax_t size = SizeOfOpen(file);
  if (size <= 2 * static_cast<std::uintmax_t>(count))
    return ReadBytes(file, path, static_cast<std::size_t>(size));
  std::string ends = ReadBytes(file, path, count);
  file.seekg(-static_cast<std::streamoff>(count), std::ios::end);
  return ends.append(ReadBytes(file, path, count));
}

std::string ReadFile(const std::string& path, std::uintmax_t max_bytes) {
  std::ifstream file = OpenReadable(path);
  const std::uintmax_t size = SizeOfOpen(file);
  if (size > max_bytes) throw Unreadable(LUMVIK_HOST_INVALID_ARGUMENT, path, "the file is too large");
  return ReadBytes(file, path, static_cast<std::size_t>(size));
}

}  // namespace lumvik::host
