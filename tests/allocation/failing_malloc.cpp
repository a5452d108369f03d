#include "allocation/failing_malloc.h"

#include <dlfcn.h>
#include <execinfo.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>

// The C library's allocator, under the names it provides for replacements.
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);
void* __libc_memalign(size_t alignment, size_t size);
void __libc_free(void* memory);
}

namespace lumvik::test {
namespace {

constexpr int kNever = -1;

thread_local bool counting = false;
thread_local int successes_left = kNever;

// The blocks held, in an open-addressing hash table: the bookkeeping must not allocate. One thread counts at
// a time; blocks freed by other threads are ignored.
constexpr size_t kSlots = size_t{1} << 13;
constexpr size_t kMaxProbes = 64;
constexpr int kMaxFrames = 8;

struct Block {
  void* memory;
  std::array<void*, kMaxFrames> callers;  // the innermost first
};
std::array<Block, kSlots> blocks;
int blocks_held = 0;

size_t SlotOf(const void* memory) {
  return reinterpret_cast<uintptr_t>(memory) / 16 % kSlots;
}

// `caller` is the return address of the public allocation function.
void* Counted(void* memory, void* caller) {
  if (!counting || memory == nullptr) return memory;
  counting = false;  // not the allocations of backtrace
  size_t slot = SlotOf(memory);
  while (blocks[slot].memory != nullptr) slot = (slot + 1) % kSlots;
  std::array<void*, kMaxFrames> frames = {};
  backtrace(frames.data(), kMaxFrames);
  blocks[slot] = {memory, {}};
  std::copy(std::find(frames.begin(), frames.end(), caller), frames.end(), blocks[slot].callers.begin());
  ++blocks_held;
  counting = true;
  return memory;
}

// Whether this program allocated the block, directly or through the C++ library.
bool IsOurs(const Block& block) {
  const std::string program = ModuleOf(reinterpret_cast<const void*>(&IsOurs));
  for (const void* caller : block.callers) {
    const std::string module = ModuleOf(caller);
    if (module.find("libstdc++") == std::string::npos) return module == program;
  }
  return false;
}

void Forget(const void* memory) {
  if (blocks_held == 0 || memory == nullptr) return;
  // A block may come after a slot that has been freed since.
  for (size_t slot = SlotOf(memory), seen = 0; seen < kMaxProbes; slot = (slot + 1) % kSlots, ++seen) {
    if (blocks[slot].memory != memory) continue;
    blocks[slot] = {};
    --blocks_held;
    return;
  }
}

bool Fails() {
  if (!counting || successes_left == kNever || successes_left-- > 0) return false;
  errno = ENOMEM;
  return true;
}

}  // namespace

FailingMalloc::FailingMalloc(int successes) {
  blocks.fill({});
  blocks_held = 0;
  successes_left = successes;
  counting = true;
}

FailingMalloc::~FailingMalloc() {
  Stop();
}

void FailingMalloc::Stop() {
  counting = false;
}

bool FailingMalloc::HasFailed() const {
  return successes_left == kNever;
}

int BlocksHeld() {
  return static_cast<int>(std::count_if(blocks.begin(), blocks.end(), [](const Block& block) {
    return block.memory != nullptr && IsOurs(block);
  }));
}

std::string ModuleOf(const void* code) {
  Dl_info info;
  return dladdr(code, &info) != 0 && info.dli_fname != nullptr ? info.dli_fname : "";
}

}  // namespace lumvik::test

extern "C" {

void* malloc(size_t size) {
  if (lumvik::test::Fails()) return nullptr;
  return lumvik::test::Counted(__libc_malloc(size), __builtin_return_address(0));
}

void* calloc(size_t count, size_t size) {
  if (lumvik::test::Fails()) return nullptr;
  return lumvik::test::Counted(__libc_calloc(count, size), __builtin_return_address(0));
}

void* realloc(void* memory, size_t size) {
  if (lumvik::test::Fails()) return nullptr;
  lumvik::test::Forget(memory);
  return lumvik::test::Counted(__libc_realloc(memory, size), __builtin_return_address(0));
}

int posix_memalign(void** memory, size_t alignment, size_t size) {
  if (lumvik::test::Fails()) return ENOMEM;
  *memory = lumvik::test::Counted(__libc_memalign(alignment, size), __builtin_return_address(0));
  return *memory == nullptr ? ENOMEM : 0;
}

void free(void* memory) {
  lumvik::test::Forget(memory);
  __libc_free(memory);
}
}
