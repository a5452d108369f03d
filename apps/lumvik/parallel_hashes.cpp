#include "parallel_hashes.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <thread>

#include "path_tools.h"

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
  // The calling thread works as well.
  std::vector<std::thread> others(std::min<std::size_t>(threads, paths.size()) - (paths.empty() ? 0 : 1));
  for (std::thread& thread : others) thread = std::thread(work);
  work();
  for (std::thread& thread : others) thread.join();
  return results;
}

}  // namespace lumvik
