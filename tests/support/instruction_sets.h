// Runs a check with each instruction set.
#ifndef LUMVIK_TESTS_SUPPORT_INSTRUCTION_SETS_H_
#define LUMVIK_TESTS_SUPPORT_INSTRUCTION_SETS_H_

#include <gtest/gtest.h>

#include "base/vectorized.h"

namespace lumvik::test {

// Calls `check()` once for each that this processor supports.
template <typename Check>
void WithEachInstructionSet(const Check& check) {
  const InstructionSet usual = widest_instruction_set;
  for (const auto set : {InstructionSet::kBaseline, InstructionSet::kAvx2, InstructionSet::kAvx512}) {
    widest_instruction_set = set;
    if (BestInstructionSet() != set) continue;
    SCOPED_TRACE(static_cast<int>(set));
    check();
  }
  widest_instruction_set = usual;
}

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_INSTRUCTION_SETS_H_
