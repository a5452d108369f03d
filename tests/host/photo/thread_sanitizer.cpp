// Settings of ThreadSanitizer for the tests of the host library.
#ifdef LUMVIK_SANITIZE_THREAD
#include <opencv2/core/utility.hpp>

namespace {

// The synchronization of OpenCV's pool is invisible to the sanitizer.
[[maybe_unused]] const bool kUsesOneThread = [] {
  cv::setNumThreads(1);
  return true;
}();

}  // namespace

// False positives in uninstrumented libraries, and one true race: see tests/api/thread_test.cpp.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions() {
  return "race:LibRaw::get_timestamp\nrace:LibRaw::tiff_head\nrace:cv::MatExpr::operator\ndeadlock:"
         "CPLAcquireMutex\n";
}
#endif
