#include "similar/hamming_groups.h"

#include <gtest/gtest.h>

#include <random>

namespace lumvik::test {
namespace {

using IndexGroups = std::vector<std::vector<std::size_t>>;

TEST(HammingDistance, CountsDifferingBits) {
  EXPECT_EQ(HammingDistance(0, 0), 0);
  EXPECT_EQ(HammingDistance(0, ~std::uint64_t{0}), 64);
  EXPECT_EQ(HammingDistance(0xF0, 0x0F), 8);
  EXPECT_EQ(HammingDistance(std::uint64_t{1} << 63, 1), 2);
}

TEST(GroupByDistance, IncludesTheThreshold) {
  EXPECT_EQ(GroupByDistance({0x0, 0x7}, 3), IndexGroups({{0, 1}}));
  EXPECT_EQ(GroupByDistance({0x0, 0x7}, 2), IndexGroups());
  EXPECT_EQ(GroupByDistance({5, 5}, 0), IndexGroups({{0, 1}}));
}

TEST(GroupByDistance, IsTransitive) {
  EXPECT_EQ(GroupByDistance({0x00, 0xFF00, 0x0F, 0xFF}, 4), IndexGroups({{0, 2, 3}}));
}

TEST(GroupByDistance, SortsGroupsByFirstMember) {
  const std::uint64_t far = 0xFFFFFFFF;
  EXPECT_EQ(GroupByDistance({far, 0, far, 0, 1}, 1), IndexGroups({{0, 2}, {1, 3, 4}}));
}

TEST(GroupByDistance, OmitsSingletons) {
  EXPECT_EQ(GroupByDistance({}, 64), IndexGroups());
  EXPECT_EQ(GroupByDistance({7}, 64), IndexGroups());
  EXPECT_EQ(GroupByDistance({0, ~std::uint64_t{0}}, 64), IndexGroups({{0, 1}}));
}

// Compares with a breadth-first search.
TEST(GroupByDistance, FindsConnectedComponents) {
  std::mt19937_64 random(5);
  std::vector<std::uint64_t> hashes(200);
  for (std::uint64_t& hash : hashes) hash = random() & random() & 0xFFFF;
  constexpr int kThreshold = 1;
  IndexGroups expected;
  std::vector<bool> seen(hashes.size());
  for (std::size_t start = 0; start < hashes.size(); ++start) {
    if (seen[start]) continue;
    std::vector<bool> reached(hashes.size());
    reached[start] = true;
    for (bool grown = true; grown;) {
      grown = false;
      for (std::size_t i = 0; i < hashes.size(); ++i) {
        for (std::size_t j = 0; j < hashes.size(); ++j) {
          if (!reached[i] || reached[j] || HammingDistance(hashes[i], hashes[j]) > kThreshold) continue;
          reached[j] = true;
          grown = true;
        }
      }
    }
    std::vector<std::size_t> group;
    for (std::size_t i = 0; i < hashes.size(); ++i) {
      if (reached[i]) group.push_back(i);
      seen[i] = seen[i] || reached[i];
    }
    if (group.size() > 1) expected.push_back(group);
  }
  ASSERT_GT(expected.size(), 1U);
  EXPECT_EQ(GroupByDistance(hashes, kThreshold), expected);
}

}  // namespace
}  // namespace lumvik::test
