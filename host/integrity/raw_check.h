// Finds damage in RAW files.
#ifndef LUMVIK_HOST_INTEGRITY_RAW_CHECK_H_
#define LUMVIK_HOST_INTEGRITY_RAW_CHECK_H_

#include <optional>
#include <string>
#include <string_view>

#include "integrity/damage.h"

namespace lumvik::host {

// `bytes` is the content of the file at `path`.
std::optional<Damage> CheckRaw(const std::string& path, std::string_view bytes);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_INTEGRITY_RAW_CHECK_H_
