// Every function, with each of its arguments misused in turn, returns the documented status with a text,
// writes nothing that it must not write, and leaves its objects as they were.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <regex>
#include <set>
#include <string>
#include <thread>

#include "host/api/call_arguments.h"
#include "host/api/misuse_table.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

constexpr std::size_t kMaxErrorText = 4096;

class MisuseTest : public ::testing::TestWithParam<TestedFunction> {};

std::string TestedName(const ::testing::TestParamInfo<TestedFunction>& info) {
  return info.param.name;
}

std::string ErrorOf(lumvik_host_photo* photo) {
  std::array<char, kMaxErrorText> text{};
  EXPECT_EQ(lumvik_host_get_error(photo, text.data(), text.size()), LUMVIK_HOST_OK);
  return text.data();
}

// Makes the call and checks its status and what it leaves. Runs in a new thread, which has no text yet.
void CheckVariation(const TestedFunction& function, CallArguments& arguments) {
  const lumvik_host_status status = function.call(arguments);
  SCOPED_TRACE(arguments.Misuse());
  const std::string text = lumvik_host_last_error();
  if (arguments.Expected() == kAnyFailure) {
    EXPECT_NE(status, LUMVIK_HOST_OK);
    EXPECT_NE(status, LUMVIK_HOST_INTERNAL) << text;
  } else {
    const int expected = arguments.Expected() == LUMVIK_HOST_OK ? function.usual : arguments.Expected();
    EXPECT_EQ(status, expected) << text;
  }
  if (status != LUMVIK_HOST_OK) {
    EXPECT_NE(text, "");
    if (arguments.ValidPhoto() != nullptr) {
      EXPECT_EQ(ErrorOf(arguments.ValidPhoto()), text);
    }
  }
  EXPECT_EQ(arguments.Damage(status), "");
}

TEST_P(MisuseTest, EveryArgument) {
  bool misused = true;
  for (int variation = 0; misused; ++variation) {
    CallArguments arguments(variation);
    std::thread([&] { CheckVariation(GetParam(), arguments); }).join();
    misused = variation == 0 || !arguments.Misuse().empty();
  }
}

INSTANTIATE_TEST_SUITE_P(Functions, MisuseTest, ::testing::ValuesIn(TestedFunctions()), TestedName);

TEST(MisuseTableTest, HoldsEveryFunctionOfTheHeader) {
  std::ifstream file(LUMVIK_HOST_HEADER);
  const std::string header{std::istreambuf_iterator<char>(file), {}};
  const std::regex declaration(R"(LUMVIK_HOST_API [^;(]*\b(lumvik_host_\w+)\()");
  std::set<std::string> declared;
  for (std::sregex_iterator it(header.begin(), header.end(), declaration), end; it != end; ++it) {
    declared.insert((*it)[1]);
  }
  EXPECT_GT(declared.size(), 60U);
  std::set<std::string> tested;
  for (const TestedFunction& function : TestedFunctions()) tested.insert(function.name);
  EXPECT_EQ(tested, declared);
}

}  // namespace
}  // namespace lumvik::host::test
