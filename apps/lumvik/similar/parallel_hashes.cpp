#include "similar/parallel_hashes.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <future>
#include <system_error>

#include "similar/photograph_hash.h"

namespace lumvik {
namespace {

HashResult Hash(const std::string& path) {
  HashResult result;
  try {
    result.hash = HashOf(path);
  } catch (const std::exception& error) {
    result.failure = error.what();
  }
  return result;
}

}  // namespace

std::vector<HashResult> HashAll(const std::vector<std::string>& paths, unsigned threads,
                                const std::function<void()>& done) {
  std::vector<HashResult> results(paths.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t i = next++; i < paths.size(); i = next++) {
      results[i] = Hash(paths[i]);
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
  return results;
}

}  // namespace lumvik
