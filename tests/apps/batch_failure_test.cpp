// `lumvik batch` with crashing workers, full disks and unwritable outputs.
#include <sys/mount.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <opencv2/imgcodecs.hpp>

#include "batch_fixture.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class BatchFailureTest : public BatchTest {
 protected:
  // Four photographs with outputs of about 200 KB each.
  void WriteNoise() const {
    cv::Mat noise(400, 600, CV_8UC3);
    for (const char* name : {"a.jpg", "b.jpg", "c.jpg", "d.jpg"}) {
      cv::randu(noise, 0, 256);
      ASSERT_TRUE(cv::imwrite(In(name), noise));
    }
  }
};

TEST_F(BatchFailureTest, AKilledWorkerFailsOnlyItsPhotograph) {
  struct {
    int signal;
    const char* name;
  } const cases[] = {{SIGSEGV, "signal 11, Segmentation fault"}, {SIGKILL, "signal 9, Killed"}};
  const std::string slow = SlowPhotograph("b slow.png");
  Photograph("photos/a.png");
  Photograph("photos/c.png");
  for (const auto& [signal, name] : cases) {
    fs::remove_all(Out());
    RunningProcess batch(BatchCommand({"--nr-luminance", "50"}));
    ASSERT_EQ(kill(AwaitWorker(batch.id(), slow), signal), 0);
    const ProcessResult result = batch.Wait();
    EXPECT_EQ(result.status, kFailure);
    EXPECT_NE(
        result.err.find("\nlumvik: cannot develop '" + slow + "': its process was killed by " + name + "\n"),
        std::string::npos)
        << result.err;
    EXPECT_EQ(Outputs(), std::set<std::string>({"a.jpg", "c.jpg"}));
    for (const fs::directory_entry& entry : fs::directory_iterator(Out())) {
      EXPECT_NE(entry.path().filename().string()[0], '.') << entry.path();
    }
  }
}

TEST_F(BatchFailureTest, AFullDiskLeavesNoPartialFiles) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can mount a small disk";
  WriteNoise();
  fs::create_directory(Out());
  if (mount("tmpfs", Out().c_str(), "tmpfs", 0, "size=500k") != 0)
    GTEST_SKIP() << "a disk cannot be mounted here";
  const ProcessResult result = Batch({"--jobs", "1"});
  const std::set<std::string> outputs = Outputs();
  ExpectWholeOutputs();
  TearDown();  // checks for temporary files before unmounting
  EXPECT_EQ(umount(Out().c_str()), 0);
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(outputs, std::set<std::string>({"a.jpg", "b.jpg"}));
  EXPECT_NE(result.err.find("lumvik: cannot write '" + Out("c.jpg") + "': "), std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("lumvik: cannot write '" + Out("d.jpg") + "': "), std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("lumvik: 2 developed, 2 failed ("), std::string::npos) << result.err;
}

TEST_F(BatchFailureTest, AShortWriteKeepsTheExistingFile) {
  WriteNoise();
  fs::create_directory(Out());
  WriteFile(Out("a.jpg"), "last year's work");
  const ProcessResult result =
      Batch({}, {"sh", "-c", "trap '' XFSZ; ulimit -f 64; exec \"$0\" \"$@\"", LUMVIK_COMMAND});
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(Outputs(), std::set<std::string>({"a.jpg"}));
  EXPECT_EQ(ReadFile(Out("a.jpg")), "last year's work");
  EXPECT_NE(result.err.find("lumvik: cannot write '" + Out("d.jpg") + "': File too large"), std::string::npos)
      << result.err;
}

TEST_F(BatchFailureTest, TheOutputFolderIsAFile) {
  Photograph("photos/a.png");
  WriteFile(Out(), "a file");
  const ProcessResult result = Batch();
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(result.err, "lumvik: cannot create the folder '" + Out() + "': Not a directory\n");
  EXPECT_EQ(ReadFile(Out()), "a file");
}

TEST_F(BatchFailureTest, AFolderInTheNamePatternIsAFile) {
  Photograph("photos/a.png");
  fs::create_directory(Out());
  WriteFile(Out("photos"), "a file");
  const ProcessResult result = Batch({"--name", "{folder}/{stem}.{ext}"});
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(result.err.find("lumvik: cannot create the folder '" + Out("photos") + "': Not a directory\n"),
            std::string::npos)
      << result.err;
}

TEST_F(BatchFailureTest, TheOutputFolderIsALinkToItself) {
  Photograph("photos/a.png");
  fs::create_symlink("developed", Out());
  const ProcessResult result = Batch();
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(result.err.find("cannot create the folder '" + Out() + "': "), std::string::npos) << result.err;
}

TEST_F(BatchFailureTest, AnInputInAnInaccessibleFolder) {
  Photograph("photos/a.png");
  fs::permissions(In(), fs::perms::none);
  std::vector<std::string> command = UnprivilegedCommand();
  command.insert(command.end(), {"batch", In("a.png"), "-o", Out()});
  const ProcessResult result = RunProcess(command);
  fs::permissions(In(), fs::perms::owner_all);
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(result.err.find("cannot read '" + In("a.png") + "': Permission denied\n"), std::string::npos)
      << result.err;
}

// A limit on open files allows pipes for only some of the workers.
TEST_F(BatchFailureTest, ContinuesWithFewerWorkers) {
#ifdef LUMVIK_SANITIZE_UNDEFINED
  GTEST_SKIP() << "the sanitizer itself needs a pipe to check the type of an object";
#endif
  for (char name = 'a'; name < 'q'; ++name) Photograph(std::string("photos/") + name + ".png");
  const ProcessResult result = Batch({"--jobs", "16", "--grain-amount", "5"},
                                     {"sh", "-c", "ulimit -n 20; exec \"$0\" \"$@\"", LUMVIK_COMMAND});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_NE(result.err.find("16 at a time"), std::string::npos) << result.err;
  EXPECT_EQ(Outputs().size(), 16U);
}

TEST_F(BatchFailureTest, UnwritableOutputs) {
  Photograph("photos/a.png");
  Photograph("photos/b.png");
  fs::create_directory(Out());
  WriteFile(Out("a.jpg"), "last year's work");
  fs::permissions(Out("a.jpg"), fs::perms::owner_read);
  const ProcessResult file = Batch({}, UnprivilegedCommand());
  EXPECT_EQ(file.status, kFailure);
  EXPECT_NE(file.err.find("lumvik: cannot write '" + Out("a.jpg") + "': Permission denied\n"),
            std::string::npos)
      << file.err;
  EXPECT_EQ(ReadFile(Out("a.jpg")), "last year's work");
  EXPECT_EQ(Outputs(), std::set<std::string>({"a.jpg", "b.jpg"}));

  fs::permissions(Out(), fs::perms::owner_read | fs::perms::owner_exec);
  const ProcessResult folder = Batch({}, UnprivilegedCommand());
  fs::permissions(Out(), fs::perms::owner_all);
  EXPECT_EQ(folder.status, kFailure);
  EXPECT_NE(folder.err.find("lumvik: cannot write into the folder '" + Out() + "': Permission denied\n"),
            std::string::npos)
      << folder.err;
  EXPECT_NE(folder.err.find("lumvik: 0 developed, 2 failed ("), std::string::npos) << folder.err;
}

TEST_F(BatchFailureTest, AClosedStandardOutputDoesNotStopTheBatch) {
  Photograph("photos/a.png");
  Photograph("photos/b.png");
  const ProcessResult result = RunProcess(
      {"sh", "-c", "{ \"$0\" \"$@\"; echo $? >&2; } | true", LUMVIK_COMMAND, "batch", In(), "-o", Out()});
  EXPECT_EQ(Outputs().size(), 2U);
  EXPECT_NE(result.err.find("lumvik: cannot write to standard output\n1\n"), std::string::npos) << result.err;
}

}  // namespace
}  // namespace lumvik::test
