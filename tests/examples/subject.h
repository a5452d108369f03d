// Worked examples run twice: on the reference implementation and on the engine.
#ifndef LUMVIK_TESTS_EXAMPLES_SUBJECT_H_
#define LUMVIK_TESTS_EXAMPLES_SUBJECT_H_

#include <gtest/gtest.h>

#include <string>

namespace lumvik::test {

template <typename Function>
struct Subject {
  const char* name;
  Function* run;
};

// A fixture whose GetParam().run is one of the two implementations of `Function`.
template <typename Function>
using Example = testing::TestWithParam<Subject<Function>>;

template <typename Function>
auto ReferenceAndEngine(Function* reference, Function* engine) {
  return testing::Values(Subject<Function>{"Reference", reference}, Subject<Function>{"Engine", engine});
}

struct SubjectName {
  template <typename Param>
  std::string operator()(const testing::TestParamInfo<Param>& test) const {
    return test.param.name;
  }
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_EXAMPLES_SUBJECT_H_
