#include <pthread.h>

#include <memory>
#include <opencv2/core/parallel/parallel_backend.hpp>
#include <opencv2/core/utility.hpp>

#include "base/after_fork.h"

#if defined(LUMVIK_LIBRAW_USES_OPENMP)
// NOLINTNEXTLINE(readability-identifier-naming): OpenMP names it
extern "C" void omp_set_num_threads(int threads);  // clang lacks <omp.h>
#endif

namespace lumvik {
namespace {

class OneThread : public cv::parallel::ParallelForAPI {
 public:
  void parallel_for(int tasks, FN_parallel_for_body_cb_t body, void* data) override { body(0, tasks, data); }
  int getThreadNum() const override { return 0; }
  int getNumThreads() const override { return 1; }
  int setNumThreads(int /*threads*/) override { return 1; }
  const char* getName() const override { return "one thread"; }
};

// Not cv::setNumThreads(), which takes locks of the pool: a child that only calls exec() would hang if they
// were held during the fork.
void UseOneThread() {
  static OneThread one_thread;
  cv::parallel::setParallelForBackend({std::shared_ptr<OneThread>(), &one_thread}, false);
#if defined(LUMVIK_LIBRAW_USES_OPENMP)
  omp_set_num_threads(1);
#endif
}

}  // namespace

bool WorkInForkedChildren() {
  cv::getNumThreads();  // initializes what UseOneThread() changes
  return pthread_atfork(nullptr, nullptr, UseOneThread) == 0;
}

}  // namespace lumvik
