// Measuring a piece of the engine beside a plain version of the same work.
#ifndef LUMVIK_BENCH_ALTERNATING_H_
#define LUMVIK_BENCH_ALTERNATING_H_

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace lumvik::bench {

// Work on one picture: `ours` is what is measured, `plain` what it is held against.
struct Comparison {
  std::function<void()> ours;
  std::function<void()> plain;
  int64_t pixels;
  int64_t bytes;                         // read and written by `ours`
  std::function<void()> before = [] {};  // each time, and not measured
};

// Registers a benchmark that runs the two in turn, so that a noisy machine disturbs both alike, and reports
// the time of `ours` with pixels and bytes a second, and `ratio`, the median time of `plain` over that of
// `ours`. `make` is called when the benchmark runs.
void RegisterComparison(const std::string& name, std::function<Comparison()> make);

}  // namespace lumvik::bench

#endif  // LUMVIK_BENCH_ALTERNATING_H_
