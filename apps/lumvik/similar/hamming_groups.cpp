#include "similar/hamming_groups.h"

#include <algorithm>
#include <bitset>
#include <numeric>
#include <utility>

namespace lumvik {
namespace {

// Union-find over 0..count-1. The representative of a set is its smallest member.
class DisjointSets {
 public:
  explicit DisjointSets(std::size_t count) : parents_(count) {
    std::iota(parents_.begin(), parents_.end(), std::size_t{0});
  }

  std::size_t Find(std::size_t i) {
    while (parents_[i] != i) {
      parents_[i] = parents_[parents_[i]];  // path halving
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

// Quadratic, but comparing ten thousand hashes takes less time than decoding ten photographs.
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
