// Every function in a child process, with the handles of its parent.
#include <gtest/gtest.h>

#include <iostream>
#include <string>

#include "host/api/call_arguments.h"
#include "host/api/child_process.h"
#include "host/api/misuse_photographs.h"
#include "host/api/misuse_table.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

// Returns the number of functions with another status than the documented one.
int CallAllWith(const HandlesOfParent& handles) {
  int wrong = 0;
  for (const TestedFunction& function : TestedFunctions()) {
    CallArguments arguments(0, &handles);
    const lumvik_host_status status = function.call(arguments);
    const lumvik_host_status expected = arguments.HasHandle() ? LUMVIK_HOST_FORKED : function.usual;
    if (status == expected) continue;
    std::cerr << function.name << ": " << lumvik_host_status_name(status) << ", " << lumvik_host_last_error()
              << '\n';
    ++wrong;
  }
  return wrong;
}

TEST(MisuseForkTest, EveryFunctionRefusesTheHandlesOfTheParent) {
  HandlesOfParent handles{};
  ASSERT_EQ(lumvik_host_open(PhotographPath().c_str(), nullptr, &handles.photo), LUMVIK_HOST_OK);
  ASSERT_EQ(lumvik_host_settings_create(&handles.settings), LUMVIK_HOST_OK);
  RawPhotographPath();  // not written by the child
  EXPECT_EQ(ExitCodeOfChild([&] { return CallAllWith(handles); }), 0);
  EXPECT_EQ(lumvik_host_settings_close(handles.settings), LUMVIK_HOST_OK);
  EXPECT_EQ(lumvik_host_close(handles.photo), LUMVIK_HOST_OK);
}

}  // namespace
}  // namespace lumvik::host::test
