#include "hamming_groups.h"

#include <algorithm>
#include <bitset>
#include <numeric>
#include <utility>

namespace lumvik {
namespace {

// Disjoint sets of the numbers below a count. Each set goes by its smallest number.
class DisjointSets {
 public:
  explicit DisjointSets(std::size_t count) : parents_(count) {
    std::iota(parents_.begin(), parents_.end(), std::size_t{0});
  }

  std::size_t Find(std::size_t i) {
    while (parents_[i] != i) {
      parents_[i] = parents_[parents_[i]];  // halves the way for the next time
      i = parents_[i];
    }
    return i;
  }

  void Join(std::size_t i, std::size_t j) {
    const std::size_t a = Find(i);
    const std::size_t b = Find(j);
    (a < b ? parents_[b] : parents_[a]) = std::min(a, b);
  }

 private:
  std::vector<std::size_t> parents_;
};

}  // namespace

int HammingDistance(std::uint64_t a, std::uint64_t b) {
  return static_cast<int>(std::bitset<64>(a ^ b).count());
}

// Looks at every pair: ten thousand photographs take less time than decoding ten of them.
std::vector<std::vector<std::size_t>> GroupByDistance(const std::vector<std::uint64_t>& hashes,
                                                      int threshold) {
  DisjointSets sets(hashes.size());
  for (std::size_t i = 0; i < hashes.size(); ++i) {
    for (std::size_t j = i + 1; j < hashes.size(); ++j) {
      if (HammingDistance(hashes[i], hashes[j]) <= threshold) sets.Join(i, j);
    }
  }
  std::vector<std::vector<std::size_t>> members(hashes.size());
  for (std::size_t i = 0; i < hashes.size(); ++i) members[sets.Find(i)].push_back(i);
  std::vector<std::vector<std::size_t>> groups;
  for (auto& group : members) {
    if (group.size() > 1) groups.push_back(std::move(group));
  }
  return groups;
}

}  // namespace lumvik
