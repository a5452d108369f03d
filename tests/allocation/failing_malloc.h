// The C library's allocations of this program, of which one can be made to fail.
#ifndef LUMVIK_TESTS_ALLOCATION_FAILING_MALLOC_H_
#define LUMVIK_TESTS_ALLOCATION_FAILING_MALLOC_H_

#include <cstddef>
#include <string>

namespace lumvik::test {

// While there is one, the allocation of this thread behind the next `successes` fails, whoever asks for it:
// operator new and all libraries end in the C library. Those behind it succeed again.
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

// How many of the blocks that our own code has allocated under the latest FailingMalloc have not been freed.
// What a library has asked for is its own matter: OpenCV loses the pixels of a matrix when there is no memory
// for its header, and keeps what it may need again.
int BlocksHeld();

// The file name of the program or library that holds this code.
std::string ModuleOf(const void* code);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_ALLOCATION_FAILING_MALLOC_H_
