// The C++ interface of the host library wraps every function of the C interface.
#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <type_traits>

#include "lumvik_host.hpp"
#include "support/temp_dir.h"

namespace lumvik::api::test {
namespace {

using lumvik::test::TempDir;

constexpr char kPhotograph[] = LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg";  // 600x400
constexpr char kRawWithSubject[] = LUMVIK_SAMPLES "/sample_small.ARW";
constexpr char kMissing[] = "/nowhere/missing.jpg";

template <typename Handle>
constexpr bool kIsMoveOnly =
    !std::is_copy_constructible_v<Handle> && !std::is_copy_assignable_v<Handle> &&
    std::is_nothrow_move_constructible_v<Handle> && std::is_nothrow_move_assignable_v<Handle>;
static_assert(kIsMoveOnly<Settings> && kIsMoveOnly<Photo>);

std::string TextOf(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

// The names in the text that `pattern` captures.
std::set<std::string> NamesIn(const std::string& path, const char* pattern) {
  const std::string text = TextOf(path);
  const std::regex name(pattern);
  std::set<std::string> names;
  for (std::sregex_iterator match(text.begin(), text.end(), name), end; match != end; ++match) {
    names.insert((*match)[1]);
  }
  return names;
}

// Expects that `call` throws Error with this status and with `part` in its text.
template <typename Call>
void ExpectError(lumvik_host_status status, const std::string& part, const Call& call) {
  try {
    call();
    ADD_FAILURE() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.status(), status) << error.what();
    EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
  }
}

TEST(HostCppTest, WrapsEveryFunction) {
  const auto declared = NamesIn(LUMVIK_HOST_HEADER, R"(LUMVIK_HOST_API [\w ]+?[ *]*(lumvik_host_\w+)\()");
  // Also passed by name, as in `Made(lumvik_host_settings_read, ...)`.
  const auto used = NamesIn(LUMVIK_HOST_CPP_HEADER, R"(\b(lumvik_host_\w+)[(,);])");
  EXPECT_GT(declared.size(), 60U);
  for (const std::string& name : declared) EXPECT_EQ(used.count(name), 1U) << name;
}

TEST(HostCppTest, VersionIsThatOfTheLibrary) {
  EXPECT_EQ(Version(), lumvik_host_version());
  EXPECT_EQ(EngineVersion(), lumvik_host_engine_version());
  EXPECT_EQ(StatusName(LUMVIK_HOST_DAMAGED), "damaged");
}

}  // namespace
}  // namespace lumvik::api::test
