// Hashes that lie near each other.
#ifndef LUMVIK_APPS_HAMMING_GROUPS_H_
#define LUMVIK_APPS_HAMMING_GROUPS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumvik {

// In how many of their bits two hashes differ: 0..64.
int HammingDistance(std::uint64_t a, std::uint64_t b);

// The groups of at least two hashes in which each is at most `threshold` bits away from another one of its
// group, but from none outside. A hash is named by its index; a group is sorted, and the groups are sorted by
// their first.
std::vector<std::vector<std::size_t>> GroupByDistance(const std::vector<std::uint64_t>& hashes,
                                                      int threshold);

}  // namespace lumvik

#endif  // LUMVIK_APPS_HAMMING_GROUPS_H_
