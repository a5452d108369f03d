// Groups of hashes that are close to each other.
#ifndef LUMVIK_APPS_SIMILAR_HAMMING_GROUPS_H_
#define LUMVIK_APPS_SIMILAR_HAMMING_GROUPS_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumvik {

// The number of bits in which two hashes differ: 0..64.
int HammingDistance(std::uint64_t a, std::uint64_t b);

// The connected groups of two or more hashes, where hashes at most `threshold` bits apart are connected. Each
// group is a sorted list of indices; groups are sorted by their first.
std::vector<std::vector<std::size_t>> GroupByDistance(const std::vector<std::uint64_t>& hashes,
                                                      int threshold);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SIMILAR_HAMMING_GROUPS_H_
