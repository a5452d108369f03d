// LibRaw's decoders leave the calling thread no pool of OpenMP, which would make a forked child wait forever.
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <memory>
#include <thread>

#include "image/guarded_libraw.h"
#include "support/process_state.h"

namespace lumvik::test {
namespace {

// With LibRaw's loops over blocks, planes and rows of an image accessible.
class LibRawLoops : public GuardedLibRaw {
 public:
  using GuardedLibRaw::crxLoadDecodeLoop;
  using GuardedLibRaw::crxLoadFinalizeLoopE3;
  using GuardedLibRaw::fuji_decode_loop;
};

std::ptrdiff_t ThreadsOfProcess() {
  const std::filesystem::directory_iterator threads("/proc/self/task");
  return std::distance(begin(threads), end(threads));
}

// An empty loop creates the pool, too. Its threads end soon after that of their loop.
TEST(RawOpenMp, LoopsLeaveNoThreads) {
  const auto raw = std::make_unique<LibRawLoops>();
  const Deadline deadline;
  const std::ptrdiff_t before = ThreadsOfProcess();
  const auto wait_for_threads = [before] {
    while (ThreadsOfProcess() > before) std::this_thread::yield();
  };
  raw->fuji_decode_loop(nullptr, 0, nullptr, nullptr);
  wait_for_threads();
  raw->crxLoadDecodeLoop(nullptr, 0);
  wait_for_threads();
  raw->crxLoadFinalizeLoopE3(nullptr, 0);
  wait_for_threads();
}

}  // namespace
}  // namespace lumvik::test
