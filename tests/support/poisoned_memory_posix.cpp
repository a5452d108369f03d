#include <malloc.h>

#include <cstddef>

#include "support/poisoned_memory.h"

namespace lumvik::test {
namespace {

constexpr int kDefaultMmapMax = 65536;

// Deeper than any call of the engine or its libraries reaches.
[[gnu::noinline]] void PoisonStack(uint8_t byte) {
  volatile uint8_t stack[size_t{1} << 20];
  for (size_t i = 0; i < sizeof(stack); ++i) stack[i] = byte;
}

}  // namespace

PoisonedMemory::PoisonedMemory(uint8_t byte) {
  mallopt(M_MMAP_MAX, 0);                           // pages of a fresh mapping would be zero
  mallopt(M_PERTURB, static_cast<uint8_t>(~byte));  // what freed memory is filled with
  PoisonStack(byte);
}

PoisonedMemory::~PoisonedMemory() {
  mallopt(M_PERTURB, 0);
  mallopt(M_MMAP_MAX, kDefaultMmapMax);
}

}  // namespace lumvik::test
