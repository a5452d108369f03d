// Makes one of this program's allocations fail.
#ifndef LUMVIK_TESTS_ALLOCATION_FAILING_MALLOC_H_
#define LUMVIK_TESTS_ALLOCATION_FAILING_MALLOC_H_

#include <cstddef>
#include <string>

namespace lumvik::test {

// While it exists, this thread's next `successes` allocations succeed, the one after them fails, and all
// later ones succeed. Covers operator new and all libraries, which end in malloc.
class FailingMalloc {
 public:
  explicit FailingMalloc(int successes);
  ~FailingMalloc();
  FailingMalloc(const FailingMalloc&) = delete;
  FailingMalloc& operator=(const FailingMalloc&) = delete;

  // No further allocation fails or is counted.
  void Stop();
  bool HasFailed() const;
};

// The number of blocks that our own code has allocated under the latest FailingMalloc and not freed. Blocks
// of libraries do not count: OpenCV leaks a matrix's pixels when it cannot allocate its header, and keeps
// caches.
int BlocksHeld();

// The file name of the program or library that holds this code.
std::string ModuleOf(const void* code);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_ALLOCATION_FAILING_MALLOC_H_
