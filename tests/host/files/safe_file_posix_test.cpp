// Safe files with permissions, symbolic links and limits of the system.
#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <thread>

#include "base/failure.h"
#include "files/file_reading.h"
#include "files/safe_file.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

namespace fs = std::filesystem;
using lumvik::test::TempDir;

constexpr std::uintmax_t kMuch = 1 << 20;
constexpr uid_t kNobody = 65534;

Status StatusOfWriting(const std::string& path, const std::string& bytes, Overwrite overwrite) {
  try {
    WriteSafely(path, bytes, overwrite);
    return LUMVIK_HOST_OK;
  } catch (const Failure& failure) {
    return failure.GetStatus();
  }
}

// The same without the privileges of root, to which permissions do not apply.
Status StatusOfUnprivilegedWriting(const std::string& path, Overwrite overwrite) {
  Status status = LUMVIK_HOST_OK;
  std::thread([&] {
    if (::geteuid() == 0) ::setfsuid(kNobody);  // of this thread only
    status = StatusOfWriting(path, "new", overwrite);
  }).join();
  return status;
}

// While it lives, no file may grow beyond this size, and the signal for it ends the process, as by default.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    ::getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    ::setrlimit(RLIMIT_FSIZE, &limit);
    handler_ = std::signal(SIGXFSZ, SIG_DFL);
  }
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int) = SIG_DFL;
};

TEST(SafeFilePosixTest, OverwritingKeepsThePermissions) {
  const TempDir dir;
  const std::string path = dir.File("a");
  WriteSafely(path, "old", Overwrite::kNo);
  fs::permissions(path, fs::perms(0640));
  WriteSafely(path, "new", Overwrite::kYes);
  EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
}

TEST(SafeFilePosixTest, NewFileHasThePermissionsOfTheMask) {
  const TempDir dir;
  const mode_t before = ::umask(027);
  WriteSafely(dir.File("a"), "new", Overwrite::kNo);
  ::umask(before);
  EXPECT_EQ(fs::status(dir.File("a")).permissions(), fs::perms(0640));
}

TEST(SafeFilePosixTest, WritesThroughSymbolicLinks) {
  const TempDir dir;
  fs::create_directory(dir.File("folder"));
  const std::string target = dir.File("folder/target");
  fs::create_symlink("folder/target", dir.File("second"));
  fs::create_symlink(dir.File("second"), dir.File("first"));
  EXPECT_EQ(StatusOfWriting(dir.File("first"), "new", Overwrite::kNo), LUMVIK_HOST_OK);  // a dangling link
  EXPECT_EQ(StatusOfWriting(dir.File("first"), "newer", Overwrite::kNo), LUMVIK_HOST_EXISTS);
  EXPECT_EQ(StatusOfWriting(dir.File("first"), "newest", Overwrite::kYes), LUMVIK_HOST_OK);
  EXPECT_EQ(ReadFile(target, kMuch), "newest");
  EXPECT_TRUE(fs::is_symlink(dir.File("first")));
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(target)));
}

TEST(SafeFilePosixTest, CircularLinksAreInvalid) {
  const TempDir dir;
  fs::create_symlink("b", dir.File("a"));
  fs::create_symlink("a", dir.File("b"));
  EXPECT_EQ(StatusOfWriting(dir.File("a"), "new", Overwrite::kYes), LUMVIK_HOST_INVALID_ARGUMENT);
}

TEST(SafeFilePosixTest, OnlyRegularFilesAreWritten) {
  const TempDir dir;
  ASSERT_EQ(::mkfifo(dir.File("pipe").c_str(), 0600), 0);
  fs::create_symlink("/dev/full", dir.File("link"));
  for (const std::string& path : {dir.File("pipe"), dir.File("link"), std::string("/dev/full")}) {
    EXPECT_EQ(StatusOfWriting(path, "new", Overwrite::kYes), LUMVIK_HOST_INVALID_ARGUMENT) << path;
  }
}

TEST(SafeFilePosixTest, ReadOnlyFolderDeniesAccess) {
  const TempDir dir;
  fs::permissions(dir.path(), fs::perms(0555));
  EXPECT_EQ(StatusOfUnprivilegedWriting(dir.File("a"), Overwrite::kNo), LUMVIK_HOST_ACCESS_DENIED);
  fs::permissions(dir.path(), fs::perms(0700));
}

TEST(SafeFilePosixTest, ReadOnlyFileIsNotReplaced) {
  const TempDir dir;
  fs::permissions(dir.path(), fs::perms(0777));
  WriteSafely(dir.File("a"), "old", Overwrite::kNo);
  fs::permissions(dir.File("a"), fs::perms(0444));
  EXPECT_EQ(StatusOfUnprivilegedWriting(dir.File("a"), Overwrite::kYes), LUMVIK_HOST_ACCESS_DENIED);
  EXPECT_EQ(ReadFile(dir.File("a"), kMuch), "old");
}

TEST(SafeFilePosixTest, FullDiskIsReported) {
  const std::error_code error = FillFile("/dev/full", "new", WriteMode::kAppend);
  EXPECT_EQ(StatusOf(error), LUMVIK_HOST_DISK_FULL);
}

TEST(SafeFilePosixTest, FileSizeLimitIsAFullDiskAndLeavesTheOldFile) {
  const TempDir dir;
  const std::string path = dir.File("a");
  WriteSafely(path, "old", Overwrite::kNo);
  {
    const FileSizeLimit limit(1000);
    EXPECT_EQ(StatusOfWriting(path, std::string(1001, 'a'), Overwrite::kYes), LUMVIK_HOST_DISK_FULL);
  }
  EXPECT_EQ(ReadFile(path, kMuch), "old");
  EXPECT_EQ(std::distance(fs::directory_iterator(dir.path()), fs::directory_iterator()), 1);
}

TEST(SafeFilePosixTest, FindsTheReasonThatAWriterDoesNotKnow) {
  const TempDir dir;
  const SafeFile file(dir.File("a"), Overwrite::kNo);
  const FileSizeLimit limit(1000);
  try {
    file.WriteWith(
        [](const std::string& path) { return !FillFile(path, std::string(1001, 'a'), WriteMode::kReplace); });
    FAIL() << "written";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_DISK_FULL) << failure.what();
  }
}

TEST(SafeFilePosixTest, FileSizeLimitLeavesTheSignalMaskAlone) {
  const TempDir dir;
  const FileSizeLimit limit(10);
  StatusOfWriting(dir.File("a"), "more than ten bytes", Overwrite::kNo);
  sigset_t blocked;
  ::pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
  EXPECT_EQ(::sigismember(&blocked, SIGXFSZ), 0);
}

}  // namespace
}  // namespace lumvik::host::test
