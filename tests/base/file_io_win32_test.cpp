// Windows only: devices by name, and files held open by another program.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <fstream>

#include "base/file_io.h"
#include "base/wide_path_win32.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

const std::vector<uint8_t> kBytes = {1, 2, 3};

// Holds a file open without sharing it.
class HeldFile {
 public:
  explicit HeldFile(const std::string& path)
      : handle_(CreateFileW(WidePath(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                            FILE_ATTRIBUTE_NORMAL, nullptr)) {
    EXPECT_NE(handle_, INVALID_HANDLE_VALUE);
  }
  ~HeldFile() { CloseHandle(handle_); }
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;

 private:
  HANDLE handle_;
};

class FileIoWin32 : public ::testing::Test {
 protected:
  TempDir dir_;
};

TEST_F(FileIoWin32, PathsBecomeUtf16) {
  EXPECT_EQ(WidePath(""), L"");
  EXPECT_EQ(WidePath("C:\\a.jpg"), L"C:\\a.jpg");
  EXPECT_EQ(WidePath("\xC3\xA9\xE5\x86\x99\xF0\x9F\x93\xB7"), L"\u00E9\u5199\U0001F4F7");
}

TEST_F(FileIoWin32, WhatIsNotUtf8NamesNoFile) {
  EXPECT_FALSE(fs::exists(fs::path(WidePath(dir_.File("a") + "\xFF"))));
  EXPECT_TRUE(ReadWholeFile(WriteBytes(dir_.File("a"), kBytes) + "\xFF").empty());
}

TEST_F(FileIoWin32, WhatIsNoFileReadsAsEmptyAtOnce) {
  const Deadline deadline;
  EXPECT_TRUE(ReadWholeFile(MakePipe(dir_.File("pipe"))).empty());
  EXPECT_TRUE(ReadWholeFile("NUL").empty());
  EXPECT_TRUE(ReadWholeFile(dir_.path().string()).empty());
  EXPECT_TRUE(ReadWholeFile(dir_.File("missing")).empty());
}

TEST_F(FileIoWin32, OnlyReadingAPipeOrADeviceMayBlock) {
  EXPECT_TRUE(ReadingMayBlock(MakePipe(dir_.File("pipe"))));
  EXPECT_TRUE(ReadingMayBlock("NUL"));
  EXPECT_FALSE(ReadingMayBlock(WriteBytes(dir_.File("file"), kBytes)));
  EXPECT_FALSE(ReadingMayBlock(dir_.path().string()));
  EXPECT_FALSE(ReadingMayBlock(dir_.File("missing")));
}

TEST_F(FileIoWin32, AHeldFileIsNeitherReadNorReplaced) {
  const std::string path = WriteBytes(dir_.File("a"), kBytes);
  {
    const HeldFile held(path);
    EXPECT_TRUE(ReadWholeFile(path).empty());
    EXPECT_FALSE(WriteWholeFile(path, {9}));
  }
  EXPECT_EQ(ReadBytes(path), kBytes);
}

TEST_F(FileIoWin32, AReadOnlyFileKeepsItsBytes) {
  const std::string path = WriteBytes(dir_.File("a"), kBytes);
  SetFileAttributesW(WidePath(path).c_str(), FILE_ATTRIBUTE_READONLY);
  if (std::ofstream(path, std::ios::app)) GTEST_SKIP() << "Wine lets the superuser write into any file";
  EXPECT_FALSE(WriteWholeFile(path, {9}));
  EXPECT_EQ(ReadBytes(path), kBytes);
  SetFileAttributesW(WidePath(path).c_str(), FILE_ATTRIBUTE_NORMAL);
}

}  // namespace
}  // namespace lumvik::test
