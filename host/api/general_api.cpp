// Statuses, texts and memory.
#include <cstddef>
#include <iterator>

#include "api/guard.h"
#include "api/registry.h"
#include "lumvik.h"
#include "lumvik_host.h"

namespace {

constexpr const char* kStatusNames[] = {"ok",
                                        "invalid_argument",
                                        "invalid_handle",
                                        "forked",
                                        "not_found",
                                        "not_a_photograph",
                                        "damaged",
                                        "unsupported",
                                        "out_of_memory",
                                        "canceled",
                                        "stale",
                                        "timed_out",
                                        "buffer_too_small",
                                        "exists",
                                        "access_denied",
                                        "disk_full",
                                        "io_error",
                                        "internal"};
static_assert(std::size(kStatusNames) == LUMVIK_HOST_INTERNAL + 1);

}  // namespace

const char* lumvik_host_version() {
  return LUMVIK_VERSION_TEXT;
}

const char* lumvik_host_engine_version() {
  return lumvik_version();
}

const char* lumvik_host_status_name(int32_t status) {
  const auto index = static_cast<std::size_t>(status);
  return index < std::size(kStatusNames) ? kStatusNames[index] : "unknown";
}

const char* lumvik_host_last_error() {
  return lumvik::host::ThreadText();
}

void lumvik_host_free(void* memory) {
  lumvik::host::TakeBack(memory);
}
