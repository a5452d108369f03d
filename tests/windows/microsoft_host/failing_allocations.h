// Lets large allocations of the libraries fail.
#ifndef LUMVIK_TESTS_WINDOWS_MICROSOFT_HOST_FAILING_ALLOCATIONS_H_
#define LUMVIK_TESTS_WINDOWS_MICROSOFT_HOST_FAILING_ALLOCATIONS_H_

#include "windows_functions.h"

// During its lifetime, in all threads. Replaces what both DLLs import from the C runtime.
class FailingAllocations {
 public:
  FailingAllocations() {
    Replace(static_cast<unsigned char*>(GetModuleHandleW(L"lumvik.dll")));
    Replace(static_cast<unsigned char*>(GetModuleHandleW(L"lumvik_host.dll")));
    Fails() = true;
  }
  ~FailingAllocations() { Fails() = false; }
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

 private:
  static constexpr size_t kLarge = size_t{1} << 24;

  static bool& Fails() {
    static bool fails = false;
    return fails;
  }

  static void* Malloc(size_t size) { return Fails() && size >= kLarge ? nullptr : malloc(size); }
  static void* Calloc(size_t count, size_t size) {
    return Fails() && count * size >= kLarge ? nullptr : calloc(count, size);
  }
  static void* AlignedMalloc(size_t size, size_t alignment) {
    return Fails() && size >= kLarge ? nullptr : _aligned_malloc(size, alignment);
  }

  static uint32_t Number(const unsigned char* at) { return *reinterpret_cast<const uint32_t*>(at); }

  static void* Replacement(const char* name) {
    if (strcmp(name, "malloc") == 0) return reinterpret_cast<void*>(&Malloc);
    if (strcmp(name, "calloc") == 0) return reinterpret_cast<void*>(&Calloc);
    if (strcmp(name, "_aligned_malloc") == 0) return reinterpret_cast<void*>(&AlignedMalloc);
    return nullptr;
  }

  // Walks the import directory of a loaded module, see the Portable Executable format.
  static void Replace(unsigned char* module) {
    constexpr size_t kImportDirectory = 24 + 120;
    constexpr size_t kDescriptorSize = 20;
    constexpr size_t kHintSize = 2;
    const unsigned char* descriptor = module + Number(module + Number(module + 0x3C) + kImportDirectory);
    for (; Number(descriptor + 12) != 0; descriptor += kDescriptorSize) {
      const auto* name = reinterpret_cast<const uint64_t*>(module + Number(descriptor));
      auto* function = reinterpret_cast<void**>(module + Number(descriptor + 16));
      for (; *name != 0; ++name, ++function) {
        if (static_cast<int64_t>(*name) < 0) continue;  // imported by number
        void* const other = Replacement(reinterpret_cast<const char*>(module + *name + kHintSize));
        if (other == nullptr) continue;
        Dword previous = 0;
        VirtualProtect(function, sizeof(*function), kReadWrite, &previous);
        *function = other;
        VirtualProtect(function, sizeof(*function), previous, &previous);
      }
    }
  }
};

#endif  // LUMVIK_TESTS_WINDOWS_MICROSOFT_HOST_FAILING_ALLOCATIONS_H_
