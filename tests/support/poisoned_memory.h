// Memory that was never written, made recognizable.
#ifndef LUMVIK_TESTS_SUPPORT_POISONED_MEMORY_H_
#define LUMVIK_TESTS_SUPPORT_POISONED_MEMORY_H_

#include <cstdint>

namespace lumvik::test {

// While it exists, newly allocated memory of any size, and the stack below the caller, holds `byte`. Has no
// effect on the allocator of a sanitizer.
class PoisonedMemory {
 public:
  explicit PoisonedMemory(uint8_t byte);
  ~PoisonedMemory();
  PoisonedMemory(const PoisonedMemory&) = delete;
  PoisonedMemory& operator=(const PoisonedMemory&) = delete;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_POISONED_MEMORY_H_
