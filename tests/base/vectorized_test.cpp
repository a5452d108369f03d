#include "base/vectorized.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/instruction_sets.h"

namespace lumvik {
namespace {

TEST(Vectorized, RunsTheLoopOnceWithEverySet) {
  int sets = 0;
  test::WithEachInstructionSet([&] {
    ++sets;
    std::vector<int> values(1000, 1);
    int* const data = values.data();
    Vectorized([=] {
      for (int i = 0; i < 1000; ++i) data[i] += i;
    });
    for (int i = 0; i < 1000; ++i) ASSERT_EQ(values[static_cast<size_t>(i)], i + 1);
  });
  EXPECT_GE(sets, 1);
}

// A fused multiply-add rounds once and would give 2^-46 here.
TEST(Vectorized, NoSetFusesAMultiplicationWithAnAddition) {
  const volatile float a = 1.0F + 0x1p-23F;
  test::WithEachInstructionSet([&] {
    std::vector<float> values(64, static_cast<float>(a));
    float* const data = values.data();
    Vectorized([=] {
      for (int i = 0; i < 64; ++i) data[i] = data[i] * data[i] - (1.0F + 0x1p-22F);
    });
    for (const float value : values) ASSERT_EQ(value, 0.0F);
  });
}

TEST(Vectorized, NoSetIsWiderThanTheWidestAllowed) {
  const InstructionSet usual = widest_instruction_set;
  for (const auto widest : {InstructionSet::kBaseline, InstructionSet::kAvx2}) {
    widest_instruction_set = widest;
    EXPECT_LE(BestInstructionSet(), widest);
  }
  widest_instruction_set = usual;
}

TEST(Vectorized, TheUsualSetIsBackAfterwards) {
  const InstructionSet usual = BestInstructionSet();
  test::WithEachInstructionSet([] {});
  EXPECT_EQ(BestInstructionSet(), usual);
}

}  // namespace
}  // namespace lumvik
