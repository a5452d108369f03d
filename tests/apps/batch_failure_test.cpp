// `lumvik batch` with crashing workers, full disks and unwritable outputs.
#include <sys/mount.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <opencv2/imgcodecs.hpp>

#include "batch_fixture.h"
#include "terminal/exit_status.h"

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

TEST_F(BatchFailureTest, AFullDiskStopsTheBatch) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can mount a small disk";
  WriteNoise();
  fs::create_directory(Out());
  if (mount("tmpfs", Out().c_str(), "tmpfs", 0, "size=500k") != 0)
    GTEST_SKIP() << "a disk cannot be mounted here";
  const ProcessResult result = Batch({"--jobs", "1", "--json"});
  const std::set<std::string> outputs = Outputs();
  ExpectWholeOutputs();
  TearDown();  // checks for temporary files before unmounting
  EXPECT_EQ(mount("tmpfs", Out().c_str(), "tmpfs", MS_REMOUNT, "size=2m"), 0);
  const ProcessResult resumed = Batch({"--jobs", "1", "--resume"});
  EXPECT_EQ(Outputs().size(), 4U);
  EXPECT_EQ(umount(Out().c_str()), 0);
  EXPECT_EQ(result.status, kDiskFull);
  EXPECT_EQ(outputs, std::set<std::string>({"a.jpg", "b.jpg"}));
  EXPECT_NE(result.err.find("c.jpg'"), std::string::npos) << result.err;
  EXPECT_EQ(result.err.find("d.jpg"), std::string::npos) << result.err;
  const std::string cause = "the disk of '" + Out() + "' is full; free some space and continue with --resume";
  EXPECT_NE(result.err.find("\nlumvik: " + cause + "\nlumvik: 2 developed, 1 failed, 1 not started"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(nlohmann::json::parse(result.out).at("stopped"), cause);
  EXPECT_EQ(resumed.status, kSuccess) << resumed.err;
  EXPECT_NE(resumed.err.find("2 developed, 2 skipped"), std::string::npos) << resumed.err;
}

TEST_F(BatchFailureTest, AFullDiskWithoutRoomForTheFirstOutput) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can mount a small disk";
  WriteNoise();
  fs::create_directory(Out());
  if (mount("tmpfs", Out().c_str(), "tmpfs", 0, "size=4k,nr_inodes=3") != 0)
    GTEST_SKIP() << "a disk cannot be mounted here";
  const ProcessResult result = Batch({"--jobs", "1"});
  TearDown();
  EXPECT_EQ(umount(Out().c_str()), 0);
  EXPECT_EQ(result.status, kDiskFull);
  EXPECT_NE(
      result.err.find("lumvik: cannot write into the folder '" + Out() + "': No space left on device\n"),
      std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("0 developed, 1 failed, 3 not started"), std::string::npos) << result.err;
}

TEST_F(BatchFailureTest, AShortWriteKeepsTheExistingFile) {
  WriteNoise();
  ASSERT_EQ(Batch({"--jpeg-quality", "50"}).status, kSuccess);
  const std::string before = ReadFile(Out("a.jpg"));
  const ProcessResult result =
      Batch({"--jobs", "1"}, {"sh", "-c", "trap '' XFSZ; ulimit -f 64; exec \"$0\" \"$@\"", LUMVIK_COMMAND});
  EXPECT_EQ(result.status, kDiskFull);
  EXPECT_EQ(Outputs(), std::set<std::string>({"a.jpg", "b.jpg", "c.jpg", "d.jpg"}));
  EXPECT_EQ(ReadFile(Out("a.jpg")), before);
  EXPECT_NE(result.err.find("lumvik: cannot write '" + Out("a.jpg") + "': File too large"), std::string::npos)
      << result.err;
}

TEST_F(BatchFailureTest, ASlowPhotographIsGivenUp) {
  const std::string slow = SlowPhotograph("a slow.png");
  Photograph("photos/b.png");
  RunningProcess batch(BatchCommand({"--nr-luminance", "50", "--time-limit", "2"}));
  ASSERT_EQ(kill(AwaitWorker(batch.id(), slow), SIGSTOP), 0);
  const ProcessResult result = batch.Wait();
  ExpectNoProcessLeft();
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(result.err.find("\nlumvik: cannot develop '" + slow +
                            "': it took longer than 2 s and was stopped; --time-limit raises the limit\n"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(Outputs(), std::set<std::string>({"b.jpg"}));
  ExpectRefusal(Batch({"--time-limit", "-1"}), kUsage, "--time-limit: '-1' is not a whole number in 0..");
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
  const ProcessResult file = Batch({"--overwrite"}, UnprivilegedCommand());
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
