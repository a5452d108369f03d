#include "base/file_io.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

// Contains every byte value.
std::vector<uint8_t> ManyBytes(size_t count) {
  std::vector<uint8_t> bytes(count);
  for (size_t i = 0; i < count; ++i) bytes[i] = static_cast<uint8_t>(i * 7 + i / 256);
  return bytes;
}

class FileIo : public ::testing::Test {
 protected:
  TempDir dir_;
};

TEST_F(FileIo, ReadsEveryByte) {
  for (const size_t size : {1U, 1000U, 300000U}) {
    const auto bytes = ManyBytes(size);
    EXPECT_EQ(ReadWholeFile(WriteBytes(dir_.File("a.bin"), bytes)), bytes) << size;
  }
}

TEST_F(FileIo, NamesAreUtf8) {
  const std::string path = dir_.File("Foto \xC3\xA9t\xC3\xA9 \xE5\x86\x99\xE7\x9C\x9F.bin");
  const auto bytes = ManyBytes(500);
  EXPECT_TRUE(WriteWholeFile(path, bytes));
  EXPECT_EQ(ReadBytes(path), bytes);
  EXPECT_EQ(ReadWholeFile(path), bytes);
}

TEST_F(FileIo, ReadsThroughALink) {
  const auto bytes = ManyBytes(100);
  fs::create_symlink(WriteBytes(dir_.File("real"), bytes), dir_.File("link"));
  EXPECT_EQ(ReadWholeFile(dir_.File("link")), bytes);
  EXPECT_FALSE(ReadingMayBlock(dir_.File("link")));
}

TEST_F(FileIo, WhatHasNoBytesReadsAsEmpty) {
  EXPECT_TRUE(ReadWholeFile(WriteBytes(dir_.File("empty"), {})).empty());
  EXPECT_TRUE(ReadWholeFile(dir_.File("missing")).empty());
  EXPECT_TRUE(ReadWholeFile(dir_.path().string()).empty());
  EXPECT_TRUE(ReadWholeFile("").empty());
  fs::create_symlink(dir_.File("missing"), dir_.File("dangling"));
  EXPECT_TRUE(ReadWholeFile(dir_.File("dangling")).empty());
}

TEST_F(FileIo, WhatIsNotAFileReadsAsEmptyAtOnce) {
  const Deadline deadline;
  EXPECT_TRUE(ReadWholeFile(MakePipe(dir_.File("pipe"))).empty());
  EXPECT_TRUE(ReadWholeFile(MakeSocket(dir_.File("socket"))).empty());
  EXPECT_TRUE(ReadWholeFile("/dev/zero").empty());
}

TEST_F(FileIo, AFileTheUserMayNotReadIsEmpty) {
  fs::permissions(dir_.path(), fs::perms::all);
  const std::string path = WriteBytes(dir_.File("secret"), ManyBytes(100));
  fs::permissions(path, fs::perms::none);
  const OrdinaryUser user;
  EXPECT_TRUE(ReadWholeFile(path).empty());
}

TEST_F(FileIo, FilesOfFourGibibytesAreNotRead) {
  const std::string path = WriteBytes(dir_.File("huge.bin"), ManyBytes(10));
  fs::resize_file(path, uint64_t{1} << 32U);  // sparse
  EXPECT_TRUE(ReadWholeFile(path).empty());
}

TEST_F(FileIo, OnlyPipesSocketsAndDevicesMayBlock) {
  EXPECT_TRUE(ReadingMayBlock(MakePipe(dir_.File("pipe"))));
  EXPECT_TRUE(ReadingMayBlock(MakeSocket(dir_.File("socket"))));
  EXPECT_TRUE(ReadingMayBlock("/dev/zero"));
  fs::create_symlink(dir_.File("pipe"), dir_.File("link"));
  EXPECT_TRUE(ReadingMayBlock(dir_.File("link")));

  EXPECT_FALSE(ReadingMayBlock(WriteBytes(dir_.File("file"), ManyBytes(10))));
  EXPECT_FALSE(ReadingMayBlock(dir_.path().string()));
  EXPECT_FALSE(ReadingMayBlock(dir_.File("missing")));
}

TEST_F(FileIo, WritingCreatesTheFile) {
  for (const size_t size : {0U, 1U, 300000U}) {
    const std::string path = dir_.File("new" + std::to_string(size));
    EXPECT_TRUE(WriteWholeFile(path, ManyBytes(size)));
    EXPECT_EQ(ReadBytes(path), ManyBytes(size));
  }
}

TEST_F(FileIo, WritingReplacesALargerFile) {
  const std::string path = WriteBytes(dir_.File("a"), std::vector<uint8_t>(10000, 1));
  EXPECT_TRUE(WriteWholeFile(path, ManyBytes(300)));
  EXPECT_EQ(ReadBytes(path), ManyBytes(300));
}

TEST_F(FileIo, WritingFailsWhereNoFileCanExist) {
  EXPECT_FALSE(WriteWholeFile(dir_.File("no/such/folder"), ManyBytes(10)));
  EXPECT_FALSE(WriteWholeFile(dir_.path().string(), ManyBytes(10)));
  EXPECT_FALSE(WriteWholeFile("", ManyBytes(10)));
}

TEST_F(FileIo, AFullDeviceFailsTheWrite) {
  if (!fs::is_character_file("/dev/full")) GTEST_SKIP() << "there is no device that is always full";
  EXPECT_FALSE(WriteWholeFile("/dev/full", ManyBytes(10)));
}

TEST_F(FileIo, AShortWriteFailsAndLeavesWhatItWrote) {
  const std::string path = dir_.File("a");
  for (const size_t room : {0U, 1000U}) {
    {
      const FileSizeLimit limit(room);
      EXPECT_FALSE(WriteWholeFile(path, ManyBytes(3000)));
    }
    EXPECT_EQ(ReadBytes(path), ManyBytes(room));
  }
}

TEST_F(FileIo, AProtectedFileKeepsItsBytes) {
  fs::permissions(dir_.path(), fs::perms::all);
  const std::string path = WriteBytes(dir_.File("a"), ManyBytes(100));
  fs::permissions(path, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
  {
    const OrdinaryUser user;
    EXPECT_FALSE(WriteWholeFile(path, ManyBytes(10)));
  }
  EXPECT_EQ(ReadBytes(path), ManyBytes(100));
}

}  // namespace
}  // namespace lumvik::test
