// Hashes many photographs in parallel.
#ifndef LUMVIK_APPS_SIMILAR_PARALLEL_HASHES_H_
#define LUMVIK_APPS_SIMILAR_PARALLEL_HASHES_H_

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace lumvik {

struct HashResult {
  std::optional<std::uint64_t> hash;
  std::string failure;  // message for the user when there is no hash
};

// One result per path, in order. Any of the threads calls `done` after each file.
std::vector<HashResult> HashAll(const std::vector<std::string>& paths, unsigned threads,
                                const std::function<void()>& done);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SIMILAR_PARALLEL_HASHES_H_
