// Measures a part of the engine against a reference implementation of the same work.
#ifndef LUMVIK_BENCH_ALTERNATING_H_
#define LUMVIK_BENCH_ALTERNATING_H_

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

namespace lumvik::bench {

// Work on one image: `ours` is measured, `plain` is the reference.
struct Comparison {
  std::function<void()> ours;
  std::function<void()> plain;
  int64_t pixels;
  int64_t bytes;                         // read and written by `ours`
  std::function<void()> before = [] {};  // runs before each iteration, unmeasured
};

// Registers a benchmark that alternates between the two, so that noise on the machine affects both equally.
// It reports the time of `ours` with pixels and bytes per second, and `ratio`, the median time of `plain`
// over that of `ours`; `cpu_ms` and `cpu_ratio` are the same for the CPU time of all threads. `make` is
// called when the benchmark runs.
void RegisterComparison(const std::string& name, std::function<Comparison()> make);

}  // namespace lumvik::bench

#endif  // LUMVIK_BENCH_ALTERNATING_H_
