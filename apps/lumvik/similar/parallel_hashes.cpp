#include "similar/parallel_hashes.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <future>
#include <system_error>
#include <utility>

#include "lumvik_host.hpp"
#include "similar/photograph_hash.h"

namespace lumvik {
namespace {

struct Attempt {
  HashResult result;
  bool lacked_memory = false;
};

Attempt Hash(const std::string& path) {
  Attempt attempt;
  try {
    attempt.result.hash = HashOf(path);
  } catch (const api::Error& error) {
    attempt.result.failure = error.what();
    attempt.lacked_memory = error.status() == LUMVIK_HOST_OUT_OF_MEMORY;
  } catch (const std::exception& error) {
    attempt.result.failure = error.what();
  }
  return attempt;
}

// One result per path, in order.
std::vector<Attempt> HashInParallel(const std::vector<std::string>& paths, unsigned threads,
                                    const std::function<void()>& done) {
  std::vector<Attempt> attempts(paths.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t i = next++; i < paths.size(); i = next++) {
      attempts[i] = Hash(paths[i]);
      done();
    }
  };
  std::vector<std::future<void>> others;  // besides the calling thread; joined on destruction
  try {
    while (others.size() + 1 < std::min<std::size_t>(threads, paths.size())) {
      others.push_back(std::async(std::launch::async, work));
    }
  } catch (const std::system_error&) {
    // No more threads are available; the running ones share the work.
  }
  work();
  for (std::future<void>& other : others) other.get();
  return attempts;
}

}  // namespace

std::vector<HashResult> HashAll(const std::vector<std::string>& paths, unsigned threads,
                                const std::function<void()>& done) {
  std::vector<Attempt> attempts = HashInParallel(paths, threads, done);
  std::vector<HashResult> results;
  results.reserve(paths.size());
  for (std::size_t i = 0; i < paths.size(); ++i) {
    // Threads, their stacks alone, may take the memory that one photograph at a time would find.
    if (attempts[i].lacked_memory) attempts[i] = Hash(paths[i]);
    results.push_back(std::move(attempts[i].result));
  }
  return results;
}

}  // namespace lumvik
