// Threads that are canceled during a call.
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <mutex>
#include <thread>

#include "api/guard.h"
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

}  // namespace
}  // namespace lumvik::host::test
