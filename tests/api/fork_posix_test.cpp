// Forked child processes of a process that has rendered.
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <functional>
#include <thread>

#include "api_test.h"
#include "support/bayer_file.h"
#include "support/file_bytes.h"
#include "support/plain_raw_decode.h"

namespace lumvik::test {
namespace {

constexpr unsigned kSecondsPerChild = 60;  // a child that hangs is ended by SIGALRM
constexpr int kForks = 20;

int StateOfChild(const std::function<int()>& body) {
  std::fflush(nullptr);  // else a child that exits writes the output a second time
  const pid_t child = fork();
  if (child == 0) {
    alarm(kSecondsPerChild);
    _exit(body());
  }
  int state = -1;
  waitpid(child, &state, 0);
  return state;
}

class ForkTest : public ApiTest {
 protected:
  std::string Rendered(EngineContext* context) const {
    lumvik_set_clarity(context, 30);
    lumvik_set_dehaze(context, 30);
    std::string pixels(static_cast<size_t>(lumvik_get_width(context) * lumvik_get_height(context)) * 4, '\0');
    auto* const out = reinterpret_cast<uint8_t*>(pixels.data());
    return lumvik_get_preview(context, out, static_cast<int>(pixels.size())) == LUMVIK_OK ? pixels : "";
  }

  std::string Loaded(int quality) const { return Loaded(sample_, quality); }
  std::string Loaded(const std::string& path, int quality) const {
    const ContextPtr context = CreateContext();
    return lumvik_load_arw(context.get(), path.c_str(), quality) == LUMVIK_OK ? Rendered(context.get()) : "";
  }

  // Without a camera white balance, which only LibRaw's own code develops.
  std::string UnbalancedDng() const {
    BayerFile file;
    file.neutral.clear();
    return WriteBytes(Path("unbalanced.dng"), MakeBayerFile(file));
  }

  std::string sample_ = LUMVIK_SAMPLES "/sample_small.ARW";
};

TEST_F(ForkTest, AChildLoadsAndRendersTheSame) {
  const std::string expected = Loaded(1);
  ASSERT_FALSE(expected.empty());
  EXPECT_EQ(StateOfChild([&] { return Loaded(1) == expected ? 0 : 1; }), 0);
}

TEST_F(ForkTest, AChildRendersAContextOfItsParent) {
  const ContextPtr context = CreateContext();
  ASSERT_EQ(lumvik_load_arw(context.get(), sample_.c_str(), 1), LUMVIK_OK);
  const std::string expected = Rendered(context.get());
  EXPECT_EQ(StateOfChild([&] { return Rendered(context.get()) == expected ? 0 : 1; }), 0);
}

TEST_F(ForkTest, ChildrenOfAThreadAndGrandchildrenRender) {
  std::string expected;
  int state = -1;
  std::thread([&] {
    expected = Loaded(1);
    state = StateOfChild([&] {
      std::string in_thread;
      std::thread([&] { in_thread = Loaded(1); }).join();
      if (in_thread != expected) return 1;
      return StateOfChild([&] { return Loaded(1) == expected ? 0 : 1; }) == 0 ? 0 : 2;
    });
  }).join();
  EXPECT_EQ(state, 0);
}

TEST_F(ForkTest, ForksWhileAnotherThreadRenders) {
#if defined(LUMVIK_SANITIZE_ADDRESS)
  GTEST_SKIP() << "the sanitizer's allocator does not survive a fork while another thread allocates";
#endif
  const std::string expected = Loaded(4);
  std::atomic<bool> stop{false};
  std::thread other([&] {
    const ContextPtr context = CreateContext();
    lumvik_load_arw(context.get(), sample_.c_str(), 4);
    while (!stop) Rendered(context.get());
  });
  int served = 0;
  while (served < kForks && StateOfChild([&] { return Loaded(4) == expected ? 0 : 1; }) == 0) ++served;
  EXPECT_EQ(served, kForks);
  stop = true;
  other.join();
}

TEST_F(ForkTest, ChildrenLoadWhatTheirParentLoaded) {
  constexpr int kChildren = 10;
  for (const std::string& path : {sample_, UnbalancedDng()}) {
    const std::string expected = Loaded(path, 1);
    ASSERT_FALSE(expected.empty());
    for (int i = 0; i < kChildren; ++i) {
      ASSERT_EQ(StateOfChild([&] { return Loaded(path, 1) == expected ? 0 : 1; }), 0) << path << ", " << i;
    }
  }
}

TEST_F(ForkTest, ChildrenLoadWhatAThreadOfTheirParentLoaded) {
  for (const std::string& path : {sample_, UnbalancedDng()}) {
    std::string expected;
    std::thread([&] { expected = Loaded(path, 1); }).join();
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(StateOfChild([&] { return Loaded(path, 1) == expected ? 0 : 1; }), 0) << path;
  }
}

// A load must not leave the host's thread with an OpenMP pool, whose threads a child would wait for: OpenMP
// code of the host, here LibRaw's, works in the child.
TEST_F(ForkTest, ChildrenRunOpenMpAfterALoad) {
  auto* const use_threads = reinterpret_cast<void (*)(int)>(dlsym(RTLD_DEFAULT, "omp_set_num_threads"));
  if (use_threads == nullptr) GTEST_SKIP() << "LibRaw was built without OpenMP";
  constexpr int kThreads = 2;  // even on a single core
  for (const std::string& path : {sample_, UnbalancedDng()}) {
    int state = -1;
    // A thread of the test, which nobody else gave a pool.
    std::thread([&] {
      use_threads(kThreads);
      if (Loaded(path, 1).empty()) return;
      state = StateOfChild([&] {
        use_threads(kThreads);
        return PlainDecode(path, 1).Image().empty() ? 1 : 0;
      });
    }).join();
    EXPECT_EQ(state, 0) << path;
  }
}

}  // namespace
}  // namespace lumvik::test
