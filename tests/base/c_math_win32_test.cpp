// The C library's functions that the DLL brings along give glibc's results, bit for bit.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <functional>

namespace lumvik {
namespace {

// Of the results for a million pairs of arguments, most of them ordinary.
template <typename Number>
uint64_t Checksum(const std::function<Number(Number, Number)>& function) {
  constexpr int kPairs = 1'000'000;
  uint64_t state = 1;
  const auto next = [&state] {
    constexpr uint64_t kMultiplier = 6364136223846793005;
    state = state * kMultiplier + 1;
    return static_cast<Number>(state >> 40) / static_cast<Number>(1 << 24);  // 0 to 1
  };
  uint64_t sum = 0;
  for (int i = 0; i < kPairs; ++i) {
    const Number scale = i % 8 == 0 ? Number{1000} : Number{4};
    const Number x = next() * scale;
    const Number result = function(x, (next() - Number{0.5F}) * scale);
    uint64_t bits = 0;
    std::memcpy(&bits, &result, sizeof result);
    sum = sum * 31 + bits;
  }
  return sum;
}

template <typename Number>
uint64_t Checksum(Number (*function)(Number)) {
  return Checksum<Number>([function](Number x, Number y) { return function(x) + function(x + std::abs(y)); });
}

// Like glibc, the library fuses multiply and add where the processor can.
uint64_t ByProcessor(uint64_t fused, uint64_t separate) {
  return __builtin_cpu_supports("fma") && __builtin_cpu_supports("avx2") ? fused : separate;
}

TEST(CMathTest, DoublesAreThoseOfGlibc) {
  EXPECT_EQ(Checksum<double>(std::exp), ByProcessor(2715010542057759221U, 2173851483216274181U));
  EXPECT_EQ(Checksum<double>(std::log), ByProcessor(5287746691276964016U, 12295575837428235345U));
  EXPECT_EQ(Checksum<double>([](double x, double y) { return std::pow(x, y); }),
            ByProcessor(7941813348223740598U, 16426290800564385457U));
}

TEST(CMathTest, FloatsAreThoseOfGlibc) {
  EXPECT_EQ(Checksum<float>(std::exp), 3107099543534006050U);
  EXPECT_EQ(Checksum<float>(std::exp2), 15588904332457407250U);
  EXPECT_EQ(Checksum<float>(std::log), 15442396220040414810U);
  EXPECT_EQ(Checksum<float>(std::log2), 9199608013511464787U);
  EXPECT_EQ(Checksum<float>([](float x, float y) { return std::pow(x, y); }), 15709577982079993423U);
}

}  // namespace
}  // namespace lumvik
