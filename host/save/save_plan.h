// How a render is saved: options that were checked and completed.
#ifndef LUMVIK_HOST_SAVE_SAVE_PLAN_H_
#define LUMVIK_HOST_SAVE_SAVE_PLAN_H_

#include <cstdint>
#include <optional>
#include <string>

#include "files/safe_file.h"
#include "lumvik_host.h"

namespace lumvik::host {

struct SavePlan {
  lumvik_host_format format = LUMVIK_HOST_FORMAT_UNKNOWN;
  int quality = 0;  // of a JPEG
  int bits = 0;     // per channel
  int max_width = 0;
  int max_height = 0;
  lumvik_host_metadata_policy metadata = LUMVIK_HOST_METADATA_KEEP;
  std::optional<std::string> copyright;
  bool has_profile = true;
  Overwrite overwrite = Overwrite::kNo;
  std::optional<std::string> mark;
};

// What counts of the options for a PNG of given pixels.
struct PngPlan {
  bool has_profile = true;  // of a cutout
  Overwrite overwrite = Overwrite::kNo;
  std::optional<std::string> mark;
};

// Throws Failure for a value that is no lumvik_host_overwrite.
Overwrite OverwriteOf(std::int32_t overwrite);

// A side of a size limit, and a policy. Throw Failure for values that are out of range.
int SideOf(const char* name, int side);
lumvik_host_metadata_policy PolicyOf(std::int32_t metadata);

// Each function throws Failure: LUMVIK_HOST_INVALID_ARGUMENT, or LUMVIK_HOST_UNSUPPORTED for metadata without
// its module.

// For a file, whose extension gives the format if the options do not.
SavePlan PlanForFile(const lumvik_host_save_options& options, const std::string& path);

// For memory.
SavePlan PlanForBytes(const lumvik_host_save_options& options);

PngPlan PlanForPng(const lumvik_host_save_options& options);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SAVE_SAVE_PLAN_H_
