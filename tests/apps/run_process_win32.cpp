#include <windows.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "run_process.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

void Require(bool succeeded, const char* what) {
  if (!succeeded) throw std::system_error(static_cast<int>(GetLastError()), std::system_category(), what);
}

// Quoted for the parser of the C runtime, where backslashes are special only before a quote.
std::string Quoted(const std::string& argument) {
  std::string quoted = "\"";
  std::size_t backslashes = 0;
  for (const char c : argument) {
    if (c == '"') quoted.append(backslashes + 1, '\\');
    backslashes = c == '\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  return quoted.append(backslashes, '\\') + '"';
}

HANDLE InheritableFile(const std::filesystem::path& path) {
  SECURITY_ATTRIBUTES inheritable = {sizeof inheritable, nullptr, TRUE};
  const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inheritable, CREATE_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  Require(file != INVALID_HANDLE_VALUE, "CreateFileW");
  return file;
}

std::string Text(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

int Run(const std::vector<std::string>& arguments, HANDLE out, HANDLE err) {
  std::string line;
  for (const std::string& argument : arguments) line += (line.empty() ? "" : " ") + Quoted(argument);
  std::wstring wide_line = std::filesystem::u8path(line).wstring();  // from UTF-8 to UTF-16
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = out;
  startup.hStdError = err;
  PROCESS_INFORMATION process{};
  Require(CreateProcessW(nullptr, wide_line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                         &process) != 0,
          arguments[0].c_str());
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return static_cast<int>(status);
}

}  // namespace

ProcessResult RunProcess(const std::vector<std::string>& arguments) {
  const TempDir folder;
  const HANDLE out = InheritableFile(folder.path() / "out");
  const HANDLE err = InheritableFile(folder.path() / "err");
  const int status = Run(arguments, out, err);
  CloseHandle(out);
  CloseHandle(err);
  return {status, Text(folder.path() / "out"), Text(folder.path() / "err")};
}

std::vector<std::string> Unprivileged(const std::vector<std::string>& arguments) {
  return arguments;
}

}  // namespace lumvik::test
