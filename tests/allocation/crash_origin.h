// Whether a crash after a failed allocation is that of a library or of our code.
#ifndef LUMVIK_TESTS_ALLOCATION_CRASH_ORIGIN_H_
#define LUMVIK_TESTS_ALLOCATION_CRASH_ORIGIN_H_

namespace lumvik::test {

// A crash of this process from now on ends it with one of these exit codes, after a line on standard error. A
// crash in the C or C++ runtime counts for its caller.
void ExitOnCrash(int of_a_library, int of_our_code);

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_ALLOCATION_CRASH_ORIGIN_H_
