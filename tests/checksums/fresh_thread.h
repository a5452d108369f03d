// Grain and subjects depend on OpenCV's random numbers, which start anew in every thread.
#ifndef LUMVIK_TESTS_CHECKSUMS_FRESH_THREAD_H_
#define LUMVIK_TESTS_CHECKSUMS_FRESH_THREAD_H_

#include <future>

namespace lumvik::checksums {

// Calls `call` in a new thread and returns its result.
template <typename Call>
auto OnFreshThread(const Call& call) {
  return std::async(std::launch::async, call).get();
}

}  // namespace lumvik::checksums

#endif  // LUMVIK_TESTS_CHECKSUMS_FRESH_THREAD_H_
