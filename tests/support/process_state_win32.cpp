#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <system_error>

#include "support/process_state.h"

namespace lumvik::test {
namespace {

void Require(bool succeeded, const char* what) {
  if (!succeeded) throw std::system_error(errno, std::generic_category(), what);
}

[[noreturn]] void Refuse(const char* what) {
  throw std::system_error(std::make_error_code(std::errc::not_supported), what);
}

}  // namespace

// It lasts as long as the process, which keeps the handle.
std::string MakePipe(const std::string& path) {
  const std::string name = R"(\\.\pipe\)" + std::filesystem::path(path).filename().string();
  constexpr DWORD kBufferSize = 4096;
  const HANDLE pipe = CreateNamedPipeA(name.c_str(), PIPE_ACCESS_DUPLEX, PIPE_TYPE_BYTE,
                                       PIPE_UNLIMITED_INSTANCES, kBufferSize, kBufferSize, 0, nullptr);
  if (pipe == INVALID_HANDLE_VALUE) Refuse("CreateNamedPipe");
  return name;
}

std::string MakeSocket(const std::string& /*path*/) {
  Refuse("a socket in the file system");
}

FileSizeLimit::FileSizeLimit(uint64_t /*bytes*/) {
  Refuse("a limit to the size of files");
}

FileSizeLimit::~FileSizeLimit() = default;

OrdinaryUser::OrdinaryUser() {
  Refuse("another user");
}

OrdinaryUser::~OrdinaryUser() = default;

StderrCapture::StderrCapture() : previous_(_dup(_fileno(stderr))) {
  const std::wstring folder = std::filesystem::temp_directory_path().wstring();
  wchar_t name[MAX_PATH];
  Require(GetTempFileNameW(folder.c_str(), L"err", 0, name) != 0, "GetTempFileName");
  file_ = _wopen(name, _O_RDWR | _O_BINARY | _O_TEMPORARY);  // removed when it is closed
  Require(file_ >= 0 && previous_ >= 0, "open");
  std::fflush(stderr);
  Require(_dup2(file_, _fileno(stderr)) >= 0, "dup2");
}

StderrCapture::~StderrCapture() {
  Restore();
  _close(file_);
}

void StderrCapture::Restore() {
  if (previous_ < 0) return;
  std::fflush(stderr);
  _dup2(previous_, _fileno(stderr));
  _close(previous_);
  previous_ = -1;
}

std::string StderrCapture::Take() {
  Restore();
  std::string text(static_cast<size_t>(_lseek(file_, 0, SEEK_END)), '\0');
  _lseek(file_, 0, SEEK_SET);
  Require(_read(file_, text.data(), static_cast<unsigned>(text.size())) == static_cast<int>(text.size()),
          "read");
  return text;
}

}  // namespace lumvik::test
