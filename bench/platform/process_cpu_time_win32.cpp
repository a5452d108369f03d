#include <windows.h>

#include <cstdint>

#include "process_cpu_time.h"

namespace lumvik::bench {
namespace {

// Of 100 ns.
uint64_t Ticks(const FILETIME& time) {
  constexpr int kHighShift = 32;
  return uint64_t{time.dwHighDateTime} << kHighShift | time.dwLowDateTime;
}

}  // namespace

double ProcessCpuTime() {
  FILETIME created{};
  FILETIME ended{};
  FILETIME kernel{};
  FILETIME user{};
  GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
  return static_cast<double>(Ticks(kernel) + Ticks(user)) * 1e-7;
}

}  // namespace lumvik::bench
