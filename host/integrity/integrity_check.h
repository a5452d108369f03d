// Finds damage in photographs.
#ifndef LUMVIK_HOST_INTEGRITY_INTEGRITY_CHECK_H_
#define LUMVIK_HOST_INTEGRITY_INTEGRITY_CHECK_H_

#include <optional>
#include <string>

#include "integrity/damage.h"
#include "lumvik_host.h"

namespace lumvik::host {

// Checks a file of a known format. Nothing if it is whole. Throws Failure.
std::optional<Damage> FindDamage(const std::string& path, lumvik_host_format format);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_INTEGRITY_INTEGRITY_CHECK_H_
