// The table of all functions that the tests of misuse call. Each group of functions adds its part.
#ifndef LUMVIK_TESTS_HOST_API_MISUSE_TABLE_H_
#define LUMVIK_TESTS_HOST_API_MISUSE_TABLE_H_

#include <ostream>
#include <string>
#include <vector>

#include "host/api/call_arguments.h"
#include "lumvik_host.h"

namespace lumvik::host::test {

struct TestedFunction {
  const char* name;
  lumvik_host_status (*call)(CallArguments& arguments);
  lumvik_host_status usual = LUMVIK_HOST_OK;  // of a valid call
};

inline void PrintTo(const TestedFunction& function, std::ostream* stream) {
  *stream << function.name;
}

inline std::vector<TestedFunction>& TestedFunctions() {
  static std::vector<TestedFunction> functions;
  return functions;
}

// Returns true, for the initializer of a constant.
inline bool AddTestedFunctions(const std::vector<TestedFunction>& functions) {
  TestedFunctions().insert(TestedFunctions().end(), functions.begin(), functions.end());
  return true;
}

// For functions that do not return a status.
inline lumvik_host_status OkIf(bool condition) {
  return condition ? LUMVIK_HOST_OK : LUMVIK_HOST_INTERNAL;
}

}  // namespace lumvik::host::test

#endif  // LUMVIK_TESTS_HOST_API_MISUSE_TABLE_H_
