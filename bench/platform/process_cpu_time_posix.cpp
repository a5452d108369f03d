#include <ctime>

#include "process_cpu_time.h"

namespace lumvik::bench {

double ProcessCpuTime() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace lumvik::bench
