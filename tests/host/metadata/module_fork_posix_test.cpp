// The metadata module in a forked child.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <string>
#include <thread>

#include "metadata/metadata_module.h"

namespace lumvik::host::test {
namespace {

const std::string kSonyFile = LUMVIK_SAMPLES "/sample_small.ARW";

// The exit status of a child that calls the module, or the signal that ended it after it got stuck.
int StatusOfChild() {
  constexpr unsigned kLongEnough = 20;  // seconds
  const pid_t child = fork();
  if (child == 0) {
    alarm(kLongEnough);
    _exit(ReadModuleExif(kSonyFile).lens.empty() ? 1 : 0);
  }
  int status = -1;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : WTERMSIG(status);
}

TEST(ModuleForkTest, AChildMayCallItWhateverTheParentDoes) {
  constexpr int kChildren = 30;
  std::atomic<bool> done{false};
  std::thread reader([&] {
    while (!done) ReadModuleExif(kSonyFile);
  });
  int failures = 0;
  for (int i = 0; i < kChildren && failures == 0; ++i) failures += StatusOfChild() == 0 ? 0 : 1;
  done = true;
  reader.join();
  EXPECT_EQ(failures, 0);
}

}  // namespace
}  // namespace lumvik::host::test
