#ifndef LUMVIK_BENCH_PLATFORM_PROCESS_CPU_TIME_H_
#define LUMVIK_BENCH_PLATFORM_PROCESS_CPU_TIME_H_

namespace lumvik::bench {

// The CPU time of all threads of this process, user and kernel, in seconds.
double ProcessCpuTime();

}  // namespace lumvik::bench

#endif  // LUMVIK_BENCH_PLATFORM_PROCESS_CPU_TIME_H_
