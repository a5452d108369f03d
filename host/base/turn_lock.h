// A mutex that is granted in the order of arrival.
#ifndef LUMVIK_HOST_BASE_TURN_LOCK_H_
#define LUMVIK_HOST_BASE_TURN_LOCK_H_

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace lumvik::host {

// For std::lock_guard. A std::mutex would let a thread that calls in a loop starve the others.
class TurnLock {
 public:
  // NOLINTNEXTLINE(readability-identifier-naming): the name that std::lock_guard calls
  void lock() {
    std::unique_lock<std::mutex> guard(mutex_);
    const std::uint64_t turn = next_++;
    changed_.wait(guard, [&] { return serving_ == turn; });
  }

  // NOLINTNEXTLINE(readability-identifier-naming): likewise
  void unlock() {
    {
      const std::lock_guard<std::mutex> guard(mutex_);
      ++serving_;
    }
    changed_.notify_all();
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::uint64_t next_ = 0;
  std::uint64_t serving_ = 0;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_BASE_TURN_LOCK_H_
