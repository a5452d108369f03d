// What is wrong with a file.
#ifndef LUMVIK_HOST_INTEGRITY_DAMAGE_H_
#define LUMVIK_HOST_INTEGRITY_DAMAGE_H_

#include <cstdint>
#include <optional>
#include <string>

namespace lumvik::host {

struct Damage {
  std::string reason;               // for a person, without a period
  std::uint64_t missing_bytes = 0;  // at least; 0 if unknown
};

// The damage of a file of `size` bytes that should have at least `needed`.
inline std::optional<Damage> MissingEnd(std::uint64_t size, std::uint64_t needed) {
  if (needed <= size) return std::nullopt;
  return Damage{"the data ends " + std::to_string(needed - size) + " bytes early", needed - size};
}

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_INTEGRITY_DAMAGE_H_
