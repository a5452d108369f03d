#include <windows.h>

#include <algorithm>
#include <limits>

#include "files/safe_file.h"

namespace lumvik::host {
namespace {

std::error_code LastError() {
  return {static_cast<int>(GetLastError()), std::system_category()};
}

std::error_code WriteAll(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    const auto part =
        static_cast<DWORD>(std::min<std::size_t>(bytes.size(), std::numeric_limits<int>::max()));
    DWORD written = 0;
    if (WriteFile(file, bytes.data(), part, &written, nullptr) == 0) return LastError();
    bytes.remove_prefix(written);
  }
  return {};
}

}  // namespace

std::error_code CreateNewFile(const std::filesystem::path& path) {
  HANDLE file =
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return LastError();
  ::CloseHandle(file);
  return {};
}

void WithoutFileSizeSignal(const std::function<void()>& call) {
  call();  // Windows has no such limit
}

std::error_code FillFile(const std::filesystem::path& path, std::string_view bytes, WriteMode mode) {
  const bool replaces = mode == WriteMode::kReplace;
  HANDLE file = CreateFileW(path.c_str(), replaces ? GENERIC_WRITE : FILE_APPEND_DATA, 0, nullptr,
                            replaces ? TRUNCATE_EXISTING : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return LastError();
  const std::error_code error = WriteAll(file, bytes);
  if (::CloseHandle(file) == 0 && !error) return LastError();
  return error;
}

std::error_code RenameFile(const std::filesystem::path& from, const std::filesystem::path& to,
                           bool replaces) {
  const DWORD flags = replaces ? MOVEFILE_REPLACE_EXISTING : 0;
  if (MoveFileExW(from.c_str(), to.c_str(), flags) != 0) return {};
  const std::error_code error = LastError();
  // A file that appears at this moment is reported as a sharing violation or a denied access.
  const bool exists = GetFileAttributesW(to.c_str()) != INVALID_FILE_ATTRIBUTES;
  return !replaces && exists ? std::make_error_code(std::errc::file_exists) : error;
}

}  // namespace lumvik::host
