// Files that appear under their names only when complete.
#include "files/safe_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "base/failure.h"
#include "files/file_reading.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

namespace fs = std::filesystem;
using lumvik::test::TempDir;

constexpr std::uintmax_t kMuch = 1 << 20;

std::size_t CountEntries(const fs::path& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

// The status and text of the failure; LUMVIK_HOST_OK without one.
std::pair<Status, std::string> WriteAndCatch(const std::string& path, const std::string& bytes,
                                             Overwrite overwrite) {
  try {
    WriteSafely(path, bytes, overwrite);
    return {LUMVIK_HOST_OK, ""};
  } catch (const Failure& failure) {
    return {failure.GetStatus(), failure.what()};
  }
}

TEST(SafeFileTest, WritesANewFileAndLeavesNothingElse) {
  const TempDir dir;
  WriteSafely(dir.File("ä b.txt"), std::string("a\0b\n", 4), Overwrite::kNo);
  EXPECT_EQ(ReadFile(dir.File("ä b.txt"), kMuch), std::string("a\0b\n", 4));
  EXPECT_EQ(CountEntries(dir.path()), 1U);
}

TEST(SafeFileTest, WritesAnEmptyFile) {
  const TempDir dir;
  WriteSafely(dir.File("a"), "", Overwrite::kNo);
  EXPECT_EQ(fs::file_size(dir.File("a")), 0U);
}

TEST(SafeFileTest, LeavesAnExistingFileAloneUnlessOverwriting) {
  const TempDir dir;
  const std::string path = dir.File("a.txt");
  WriteSafely(path, "old", Overwrite::kNo);
  const auto [status, text] = WriteAndCatch(path, "new", Overwrite::kNo);
  EXPECT_EQ(status, LUMVIK_HOST_EXISTS);
  EXPECT_EQ(text, "cannot write '" + path + "': the file exists");
  EXPECT_EQ(ReadFile(path, kMuch), "old");
  WriteSafely(path, "new", Overwrite::kYes);
  EXPECT_EQ(ReadFile(path, kMuch), "new");
  EXPECT_EQ(CountEntries(dir.path()), 1U);
}

TEST(SafeFileTest, DoesNotReplaceAFileThatAppearsWhileWriting) {
  const TempDir dir;
  const std::string path = dir.File("a.txt");
  SafeFile file(path, Overwrite::kNo);
  file.Write("mine");
  WriteSafely(path, "theirs", Overwrite::kNo);
  try {
    file.Commit();
    FAIL() << "committed";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_EXISTS);
  }
  EXPECT_EQ(ReadFile(path, kMuch), "theirs");
}

TEST(SafeFileTest, KeepsTheTargetUntilCommitAndAfterAbandoning) {
  const TempDir dir;
  const std::string path = dir.File("a.txt");
  WriteSafely(path, "old", Overwrite::kNo);
  {
    const SafeFile file(path, Overwrite::kYes);
    file.Write("half");
    EXPECT_EQ(ReadFile(path, kMuch), "old");
    EXPECT_EQ(ReadFile(file.TemporaryPath(), kMuch), "half");
  }
  EXPECT_EQ(ReadFile(path, kMuch), "old");
  EXPECT_EQ(CountEntries(dir.path()), 1U);
}

TEST(SafeFileTest, WritingAgainReplacesTheContent) {
  const TempDir dir;
  SafeFile file(dir.File("a.txt"), Overwrite::kNo);
  file.Write("a long first content");
  file.Write("second");
  file.Commit();
  EXPECT_EQ(ReadFile(dir.File("a.txt"), kMuch), "second");
}

TEST(SafeFileTest, OtherWritersFillTheTemporaryFile) {
  const TempDir dir;
  SafeFile file(dir.File("a.txt"), Overwrite::kNo);
  file.WriteWith(
      [](const std::string& path) { return !FillFile(PathOf(path), "theirs", WriteMode::kReplace); });
  file.Commit();
  EXPECT_EQ(ReadFile(dir.File("a.txt"), kMuch), "theirs");
}

TEST(SafeFileTest, FailureOfAnotherWriterIsReported) {
  const TempDir dir;
  {
    const SafeFile file(dir.File("a.txt"), Overwrite::kNo);
    try {
      file.WriteWith([](const std::string& /*path*/) { return false; });
      FAIL() << "written";
    } catch (const Failure& failure) {
      EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_IO_ERROR);
    }
  }
  EXPECT_EQ(CountEntries(dir.path()), 0U);
}

TEST(SafeFileTest, TemporaryFileHasTheExtensionOfTheTarget) {
  const TempDir dir;
  const SafeFile file(dir.File("a.b.JPG"), Overwrite::kNo);
  EXPECT_EQ(fs::path(file.TemporaryPath()).extension(), ".JPG");
  EXPECT_EQ(fs::path(file.TemporaryPath()).parent_path(), dir.path());
}

TEST(SafeFileTest, MissingFolderIsNotFound) {
  const TempDir dir;
  for (const std::string& path : {dir.File("none/a.txt"), dir.File("none/")}) {
    const auto [status, text] = WriteAndCatch(path, "a", Overwrite::kNo);
    EXPECT_EQ(status, LUMVIK_HOST_NOT_FOUND) << path;
    EXPECT_NE(text.find("there is no folder '"), std::string::npos) << text;
  }
}

TEST(SafeFileTest, FileInPlaceOfTheFolderIsReported) {
  const TempDir dir;
  WriteSafely(dir.File("file"), "a", Overwrite::kNo);
  const auto [status, text] = WriteAndCatch(dir.File("file/a.txt"), "a", Overwrite::kNo);
  EXPECT_NE(status, LUMVIK_HOST_OK);
  EXPECT_NE(status, LUMVIK_HOST_INTERNAL);
  EXPECT_NE(text.find("file"), std::string::npos) << text;
}

TEST(SafeFileTest, FolderAsTargetIsInvalid) {
  const TempDir dir;
  for (const std::string& path : {dir.path().u8string(), dir.path().u8string() + "/"}) {
    for (const Overwrite overwrite : {Overwrite::kNo, Overwrite::kYes}) {
      EXPECT_EQ(WriteAndCatch(path, "a", overwrite).first, LUMVIK_HOST_INVALID_ARGUMENT) << path;
    }
  }
  EXPECT_EQ(CountEntries(dir.path()), 0U);
}

TEST(SafeFileTest, EmptyPathIsInvalid) {
  EXPECT_EQ(WriteAndCatch("", "a", Overwrite::kNo),
            std::make_pair(LUMVIK_HOST_INVALID_ARGUMENT, std::string("the path is empty")));
}

}  // namespace
}  // namespace lumvik::host::test
