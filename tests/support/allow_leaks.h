// Leaks of libraries that the leak checker must not report.
#ifndef LUMVIK_TESTS_SUPPORT_ALLOW_LEAKS_H_
#define LUMVIK_TESTS_SUPPORT_ALLOW_LEAKS_H_

#ifdef LUMVIK_SANITIZE_ADDRESS
#include <sanitizer/lsan_interface.h>
#endif

namespace lumvik::test {

// Memory allocated by this thread while an object of this type exists may leak.
#ifdef LUMVIK_SANITIZE_ADDRESS
using AllowLeaks = __lsan::ScopedDisabler;
#else
struct AllowLeaks {
  AllowLeaks() {}  // user-provided, to avoid a warning about an unused variable
};
#endif

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_ALLOW_LEAKS_H_
