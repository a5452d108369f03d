// Benchmarks on a processor without wider vectors, simulated.
#ifndef LUMVIK_BENCH_INSTRUCTION_SET_H_
#define LUMVIK_BENCH_INSTRUCTION_SET_H_

#include <utility>

#include "alternating.h"
#include "base/vectorized.h"

namespace lumvik::bench {

struct NarrowerSet {
  const char* name;
  InstructionSet set;
};

inline constexpr NarrowerSet kNarrowerSets[] = {{"baseline", InstructionSet::kBaseline},
                                                {"avx2", InstructionSet::kAvx2}};

// `comparison` with our own kernels limited to `set`. The libraries keep theirs.
inline Comparison WithInstructionSet(InstructionSet set, Comparison comparison) {
  comparison.ours = [set, ours = std::move(comparison.ours)] {
    const InstructionSet usual = widest_instruction_set;
    widest_instruction_set = set;
    ours();
    widest_instruction_set = usual;
  };
  return comparison;
}

}  // namespace lumvik::bench

#endif  // LUMVIK_BENCH_INSTRUCTION_SET_H_
