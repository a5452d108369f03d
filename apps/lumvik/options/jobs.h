// The --jobs option.
#ifndef LUMVIK_APPS_OPTIONS_JOBS_H_
#define LUMVIK_APPS_OPTIONS_JOBS_H_

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string>
#include <thread>

#include "options/in_range.h"
#include "options/range.h"

namespace lumvik {

inline constexpr Range<unsigned> kJobs = {1, 256};

// One per processor.
inline unsigned DefaultJobs() {
  return std::clamp(std::thread::hardware_concurrency(), kJobs.lowest, kJobs.highest);
}

// `jobs` must outlive the command.
inline CLI::Option* AddJobsOption(CLI::App& command, unsigned& jobs, const std::string& help) {
  return command.add_option("--jobs", jobs, help)->type_name("N")->check(InRange(kJobs));
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_JOBS_H_
