#include <windows.h>

#include <algorithm>
#include <limits>

#include "base/file_io.h"
#include "base/wide_path_win32.h"

namespace lumvik {
namespace {

class FileHandle {
 public:
  explicit FileHandle(HANDLE handle) : handle_(handle) {}
  ~FileHandle() {
    if (IsOpen()) ::CloseHandle(handle_);
  }
  FileHandle(const FileHandle&) = delete;
  FileHandle& operator=(const FileHandle&) = delete;

  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
  HANDLE Get() const { return handle_; }

 private:
  HANDLE handle_;
};

}  // namespace

std::wstring WidePath(const std::string& path) {
  constexpr int kNulTerminated = -1;
  const int size = ::MultiByteToWideChar(CP_UTF8, 0, path.c_str(), kNulTerminated, nullptr, 0);
  std::wstring wide(static_cast<size_t>(size), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, path.c_str(), kNulTerminated, wide.data(), size);
  wide.resize(std::min(wide.size(), wide.find(L'\0')));
  return wide;
}

std::filesystem::path SystemPath(const std::string& path) {
  return WidePath(path);
}

std::vector<uint8_t> ReadWholeFile(const std::string& path) {
  const FileHandle file(::CreateFileW(WidePath(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
  if (!file.IsOpen() || ::GetFileType(file.Get()) != FILE_TYPE_DISK) return {};
  DWORD high = 0;
  const DWORD low = ::GetFileSize(file.Get(), &high);
  if (high != 0) return {};
  std::vector<uint8_t> bytes(low);
  DWORD got = 0;
  ::ReadFile(file.Get(), bytes.data(), low, &got, nullptr);
  return bytes;
}

bool WriteWholeFile(const std::string& path, const std::vector<uint8_t>& bytes) {
  const FileHandle file(::CreateFileW(WidePath(path).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.IsOpen()) return false;
  constexpr size_t kMaxBytes = std::numeric_limits<DWORD>::max();
  DWORD put = 0;
  return ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kMaxBytes)), &put,
                     nullptr) != 0 &&
         put == bytes.size();
}

bool ReadingMayBlock(const std::string& path) {
  // Opens the attributes only: the other end of a pipe would notice an open for reading. Folders cannot be
  // opened this way.
  const FileHandle file(::CreateFileW(WidePath(path).c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
  return file.IsOpen() && ::GetFileType(file.Get()) != FILE_TYPE_DISK;
}

}  // namespace lumvik
