// Running LibRaw's parallel calls away from the host's thread.
#ifndef LUMVIK_IMAGE_RAW_OWN_THREAD_H_
#define LUMVIK_IMAGE_RAW_OWN_THREAD_H_

#include <exception>
#include <thread>

namespace lumvik {

// Runs `call()` in a new thread, waits for it and passes on what it throws. Throws std::system_error if there
// cannot be another thread.
//
// OpenMP keeps a pool for every thread that enters a parallel region. A forked child has none of the pool's
// threads, and the next region of that thread would wait for them forever. The pool of a new thread ends with
// that thread.
template <typename Call>
void InOwnThread(const Call& call) {
  std::exception_ptr thrown;
  std::thread thread([&] {
    try {
      call();
    } catch (...) {
      thrown = std::current_exception();
    }
  });
  thread.join();
  if (thrown) std::rethrow_exception(thrown);
}

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_OWN_THREAD_H_
