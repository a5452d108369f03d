// The hashes of many photographs, by as many threads as are wanted.
#ifndef LUMVIK_APPS_PARALLEL_HASHES_H_
#define LUMVIK_APPS_PARALLEL_HASHES_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lumvik {

struct HashResult {
  std::optional<std::uint64_t> hash;
  std::string failure;  // without a hash: a sentence for the user
};

// A result for each path, in their order. `done` is called after each file, by any of the threads.
std::vector<HashResult> HashAll(const std::vector<std::string>& paths, unsigned threads,
                                const std::function<void()>& done);

}  // namespace lumvik

#endif  // LUMVIK_APPS_PARALLEL_HASHES_H_
