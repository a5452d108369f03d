// Finds damage in PNG files.
#ifndef LUMVIK_HOST_INTEGRITY_PNG_CHECK_H_
#define LUMVIK_HOST_INTEGRITY_PNG_CHECK_H_

#include <optional>
#include <string_view>

#include "integrity/damage.h"

namespace lumvik::host {

std::optional<Damage> CheckPng(std::string_view png);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_INTEGRITY_PNG_CHECK_H_
