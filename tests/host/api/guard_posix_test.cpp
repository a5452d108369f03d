// Threads that are canceled, and processes that exit, during a call.
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <thread>

#include "api/guard.h"
#include "api/registry.h"
#include "base/turn_lock.h"
#include "host/api/child_process.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

struct WaitingCall {
  TurnLock lock;
  std::atomic<bool> started{false};
  std::atomic<bool> served{false};
};

void* WaitForTurn(void* argument) {
  auto& call = *static_cast<WaitingCall*>(argument);
  const Status status = Guarded([&] {
    call.started = true;
    const std::lock_guard<TurnLock> turn(call.lock);
    call.served = true;
  });
  pthread_testcancel();  // after the call the thread ends
  return reinterpret_cast<void*>(status);
}

// In a child, since cancellation in a function that does not throw ends the process.
TEST(GuardTest, ACanceledThreadCompletesTheCall) {
  EXPECT_EQ(ExitCodeOfChild([] {
              WaitingCall call;
              call.lock.lock();
              pthread_t thread{};
              pthread_create(&thread, nullptr, WaitForTurn, &call);
              while (!call.started) std::this_thread::yield();
              pthread_cancel(thread);
              call.lock.unlock();
              void* result = nullptr;
              pthread_join(thread, &result);
              return call.served && result == PTHREAD_CANCELED ? 0 : 1;
            }),
            0);
}

TEST(GuardTest, AProcessExitsWhileThreadsUseTheLibrary) {
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(ExitCodeOfChild([]() -> int {
                for (int thread = 0; thread < 3; ++thread) {
                  std::thread([] {
                    for (;;) {
                      const HandleValue handle = OpenHandle(HandleKind::kPhoto, std::make_shared<int>());
                      Guarded([&] { CloseHandle(HandleKind::kSettings, handle); });
                      Guarded([&] { CloseHandle(HandleKind::kPhoto, handle); });
                    }
                  }).detach();
                }
                std::exit(0);
              }),
              0)
        << "exit " << i;
  }
}

}  // namespace
}  // namespace lumvik::host::test
