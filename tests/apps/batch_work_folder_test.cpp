// Work folders and locks of batches.
#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>
#include <vector>

#include "batch/staged_output.h"
#include "batch/work_folder.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class WorkFolderTest : public ::testing::Test {
 protected:
  fs::path Folder() const { return folder_.path(); }
  fs::path Work() const { return Folder() / kWorkFolderName; }

  void Write(const fs::path& path, const std::string& text) const { std::ofstream(path) << text; }
  std::string Read(const fs::path& path) const {
    std::string text;
    std::getline(std::ifstream(path), text);
    return text;
  }

  // Makes a work folder with a claim in a process that is then killed.
  void LeaveBehind() const {
    const pid_t child = fork();
    if (child == 0) {
      const WorkFolder work(Folder());
      const std::optional<LockFile> claim = work.Claim("a.jpg");
      Write(work.Staging() / "partial", "x");
      kill(getpid(), SIGKILL);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status));
  }

 private:
  TempDir folder_;
};

TEST_F(WorkFolderTest, IsRemovedWithTheLastRun) {
  {
    const WorkFolder first(Folder());
    EXPECT_TRUE(first.HasLocks());
    Write(first.Staging() / "file", "x");
    {
      const WorkFolder second(Folder());
      EXPECT_NE(first.Staging(), second.Staging());
      EXPECT_TRUE(fs::exists(first.Staging() / "file"));
    }
    EXPECT_TRUE(fs::exists(first.Staging() / "file"));
  }
  EXPECT_TRUE(fs::is_empty(Folder()));
}

TEST_F(WorkFolderTest, AClaimExcludesOthers) {
  const WorkFolder first(Folder());
  const WorkFolder second(Folder());
  {
    const std::optional<LockFile> claim = first.Claim("a.jpg");
    ASSERT_TRUE(claim);
    EXPECT_FALSE(second.Claim("a.jpg"));
    EXPECT_FALSE(first.Claim("a.jpg"));
    EXPECT_TRUE(second.Claim("b.jpg"));
    EXPECT_EQ(second.ClaimantOf("a.jpg"), getpid());
  }
  EXPECT_TRUE(second.Claim("a.jpg"));
  EXPECT_EQ(second.ClaimantOf("a.jpg"), 0);
}

TEST_F(WorkFolderTest, LeftoversOfAKilledRunAreRemoved) {
  LeaveBehind();
  EXPECT_FALSE(fs::is_empty(Work()));
  {
    const WorkFolder next(Folder());
    EXPECT_EQ(std::distance(fs::directory_iterator(Work()), fs::directory_iterator()), 2) << "its own";
    EXPECT_TRUE(next.Claim("a.jpg"));
  }
  EXPECT_TRUE(fs::is_empty(Folder()));
}

TEST_F(WorkFolderTest, ForeignFilesInItAreKept) {
  fs::create_directories(Work() / "mine");
  Write(Work() / "notes.txt", "x");
  { const WorkFolder work(Folder()); }
  EXPECT_TRUE(fs::exists(Work() / "notes.txt"));
  EXPECT_TRUE(fs::exists(Work() / "mine"));
}

// The work folder comes and goes, and so do the claims, but no two threads have one at the same time.
TEST_F(WorkFolderTest, ComesAndGoesUnderManyRuns) {
  std::atomic<int> owners = 0;
  std::atomic<int> claims = 0;
  std::atomic<bool> shared = false;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 50; ++i) {
        const WorkFolder work(Folder());
        const std::optional<LockFile> claim = work.Claim("a.jpg");
        if (!claim) continue;
        if (++owners != 1) shared = true;
        ++claims;
        --owners;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_FALSE(shared);
  EXPECT_GT(claims, 0);
  EXPECT_TRUE(fs::is_empty(Folder()));
}

TEST_F(WorkFolderTest, AnOutputAppearsUnlessAFileIsThere) {
  const WorkFolder work(Folder());
  const fs::path target = Folder() / "a.jpg";
  const StagedOutput output(work, target, 0, *work.Claim("a.jpg"));
  Write(output.Path(), "new");
  Write(target, "old");
  EXPECT_FALSE(output.MoveToAbsentTarget());
  EXPECT_EQ(Read(target), "old");
  output.ReplaceTarget();
  EXPECT_EQ(Read(target), "new");
  EXPECT_FALSE(fs::exists(output.Path()));
}

// Makes flock fail in this process, as on some network file systems.
void DisableLocks() {
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_flock, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOLCK),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog filter = {static_cast<unsigned short>(std::size(program)), program};
  prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
  prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter);
}

TEST_F(WorkFolderTest, WorksWithoutLocks) {
  LeaveBehind();
  const pid_t child = fork();
  if (child == 0) {
    DisableLocks();
    bool is_right = false;
    {
      const WorkFolder first(Folder());
      const WorkFolder second(Folder());
      is_right = !first.HasLocks() && first.Claim("b.jpg") && fs::exists(first.Staging());
    }
    _exit(is_right ? 0 : 1);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(std::distance(fs::directory_iterator(Work()), fs::directory_iterator()), 3)
      << "what may belong to another run is kept";
  CleanWorkFolder(Folder());
  EXPECT_TRUE(fs::is_empty(Folder()));
}

TEST_F(WorkFolderTest, MessagesNameTheTarget) {
  const WorkFolder work(Folder());
  const StagedOutput output(work, Folder() / "a.jpg", 7, *work.Claim("a.jpg"));
  EXPECT_EQ(output.InTermsOfTarget("cannot write '" + output.Path().string() + "': no"),
            "cannot write '" + (Folder() / "a.jpg").string() + "': no");
  EXPECT_EQ(output.InTermsOfTarget("the folder '" + output.Path().parent_path().string() + "' is full"),
            "the folder '" + Folder().string() + "' is full");
}

}  // namespace
}  // namespace lumvik::test
