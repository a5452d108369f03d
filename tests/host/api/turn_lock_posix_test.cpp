// Turns are granted in the order of arrival. Needs Linux, which shows whether a thread waits.
#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/turn_lock.h"

namespace lumvik::host::test {
namespace {

constexpr int kWaiting = 8;

bool IsBlocked(long thread) {
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
  const std::string stat{std::istreambuf_iterator<char>(file), {}};
  return stat.compare(stat.rfind(')') + 2, 1, "S") == 0;
}

// A thread that waits for the lock, then notes its number.
std::thread Arrive(TurnLock& lock, std::vector<int>& served, int number) {
  std::atomic<long> id{0};
  std::thread thread([&lock, &served, &id, number] {
    id = syscall(SYS_gettid);
    const std::lock_guard<TurnLock> turn(lock);
    served.push_back(number);
  });
  while (id == 0 || !IsBlocked(id)) std::this_thread::yield();
  return thread;
}

TEST(TurnLockTest, ServesInTheOrderOfArrival) {
  TurnLock lock;
  std::vector<int> served;
  std::vector<std::thread> threads;
  lock.lock();
  for (int i = 0; i < kWaiting; ++i) threads.push_back(Arrive(lock, served, i));
  EXPECT_TRUE(served.empty());
  lock.unlock();
  lock.lock();  // after those that arrived before
  std::vector<int> in_order(kWaiting);
  for (int i = 0; i < kWaiting; ++i) in_order[static_cast<std::size_t>(i)] = i;
  EXPECT_EQ(served, in_order);
  lock.unlock();
  for (std::thread& thread : threads) thread.join();
}

TEST(TurnLockTest, ExcludesOtherThreads) {
  TurnLock lock;
  int count = 0;  // not atomic
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int turn = 0; turn < 1000; ++turn) {
        const std::lock_guard<TurnLock> guard(lock);
        ++count;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, 4000);
}

}  // namespace
}  // namespace lumvik::host::test
