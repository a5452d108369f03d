// lumvik_bench measures the speed of the engine. It takes the options of Google Benchmark, and --once to run
// a single iteration of each benchmark.
#include <algorithm>
#include <chrono>
#include <cstring>
#include <numeric>
#include <vector>

#include "alternating.h"

namespace lumvik::bench {
namespace {

constexpr int kIterations = 9;

double Seconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

void Run(benchmark::State& state, const Comparison& comparison) {
  std::vector<double> ours;
  std::vector<double> plain;
  for (auto iteration : state) {
    static_cast<void>(iteration);
    comparison.before();
    plain.push_back(Seconds(comparison.plain));
    ours.push_back(Seconds(comparison.ours));
    state.SetIterationTime(ours.back());
  }
  state.SetItemsProcessed(state.iterations() * comparison.pixels);
  state.SetBytesProcessed(state.iterations() * comparison.bytes);
  state.counters["median_ms"] = Median(ours) * 1e3;
  state.counters["ratio"] = Median(plain) / Median(ours);
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
