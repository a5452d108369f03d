// lumvik_bench measures the speed of the engine. It takes the options of Google Benchmark, and --once to run
// a single iteration of each benchmark.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <ctime>
#include <vector>

#include "alternating.h"

namespace lumvik::bench {
namespace {

constexpr int kIterations = 9;

// In seconds.
struct Times {
  std::vector<double> wall;
  std::vector<double> cpu;  // of all threads; on Windows the C library returns wall time
};

void Measure(const std::function<void()>& work, Times& times) {
  const auto start = std::chrono::steady_clock::now();
  const std::clock_t cpu_start = std::clock();
  work();
  times.cpu.push_back(static_cast<double>(std::clock() - cpu_start) / CLOCKS_PER_SEC);
  times.wall.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void Run(benchmark::State& state, const Comparison& comparison) {
  Times ours;
  Times plain;
  for (auto iteration : state) {
    static_cast<void>(iteration);
    comparison.before();
    Measure(comparison.plain, plain);
    Measure(comparison.ours, ours);
    state.SetIterationTime(ours.wall.back());
  }
  state.SetItemsProcessed(state.iterations() * comparison.pixels);
  state.SetBytesProcessed(state.iterations() * comparison.bytes);
  state.counters["median_ms"] = Median(ours.wall) * 1e3;
  state.counters["ratio"] = Median(plain.wall) / Median(ours.wall);
  state.counters["cpu_ms"] = Median(ours.cpu) * 1e3;
  state.counters["cpu_ratio"] = Median(plain.cpu) / Median(ours.cpu);
}

struct Registered {
  std::string name;
  std::function<Comparison()> make;
};

std::vector<Registered>& Registry() {
  static std::vector<Registered> registry;
  return registry;
}

}  // namespace

void RegisterComparison(const std::string& name, std::function<Comparison()> make) {
  Registry().push_back({name, std::move(make)});
}

}  // namespace lumvik::bench

int main(int argc, char** argv) {
  using namespace lumvik::bench;
  char** end =
      std::remove_if(argv + 1, argv + argc, [](const char* arg) { return !std::strcmp(arg, "--once"); });
  const bool once = end != argv + argc;
  argc = static_cast<int>(end - argv);
  for (const Registered& entry : Registry()) {
    benchmark::RegisterBenchmark(entry.name.c_str(),
                                 [&entry](benchmark::State& state) { Run(state, entry.make()); })
        ->Iterations(once ? 1 : kIterations)
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
