// Structs and texts that hosts pass and receive.
#include "api/arguments.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

using OpenOptions = lumvik_host_open_options;

// A struct of a later version of the library.
struct LaterOptions {
  OpenOptions options;
  int32_t later_field;
};

Status StatusOfSize(std::uint32_t struct_size) {
  OpenOptions options{};
  options.struct_size = struct_size;
  try {
    OptionsOf(&options);
    return LUMVIK_HOST_OK;
  } catch (const Failure& failure) {
    return failure.GetStatus();
  }
}

TEST(ArgumentsTest, NullPointersAreNamed) {
  try {
    RequireArgument(nullptr, "photo");
    FAIL();
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_INVALID_ARGUMENT);
    EXPECT_STREQ(failure.what(), "photo is null");
  }
  int argument = 0;
  RequireArgument(&argument, "photo");
}

TEST(ArgumentsTest, NoOptionsAreZeros) {
  const OpenOptions options = OptionsOf<OpenOptions>(nullptr);
  EXPECT_EQ(options.quality, 0);
  EXPECT_EQ(options.proxy_first, 0);
  EXPECT_EQ(options.keep_colors, 0);
}

TEST(ArgumentsTest, StructSizesBelowThatOfTheFirstVersionAreInvalid) {
  for (const std::size_t size : {std::size_t{0}, std::size_t{4}, sizeof(OpenOptions) - 1}) {
    EXPECT_EQ(StatusOfSize(static_cast<std::uint32_t>(size)), LUMVIK_HOST_INVALID_ARGUMENT) << size;
  }
  EXPECT_EQ(StatusOfSize(sizeof(OpenOptions)), LUMVIK_HOST_OK);
  EXPECT_EQ(StatusOfSize(std::numeric_limits<std::uint32_t>::max()), LUMVIK_HOST_OK);
}

TEST(ArgumentsTest, OptionsOfALaterVersionAreRead) {
  LaterOptions later{};
  later.options.struct_size = sizeof(later);
  later.options.quality = 3;
  later.options.keep_colors = 1;
  later.later_field = 5;
  const OpenOptions options = OptionsOf(&later.options);
  EXPECT_EQ(options.struct_size, sizeof(OpenOptions));
  EXPECT_EQ(options.quality, 3);
  EXPECT_EQ(options.keep_colors, 1);
}

TEST(ArgumentsTest, ResultsLeaveFieldsOfALaterVersionAlone) {
  LaterOptions later{};
  later.options.struct_size = sizeof(later);
  later.later_field = 5;
  OpenOptions result{};
  result.quality = 2;
  RequireResult(&later.options, "options");
  StoreResult(result, &later.options);
  EXPECT_EQ(later.options.struct_size, sizeof(later));
  EXPECT_EQ(later.options.quality, 2);
  EXPECT_EQ(later.later_field, 5);
}

TEST(ArgumentsTest, ResultsNeedAStructSize) {
  OpenOptions result{};
  EXPECT_THROW(RequireResult(&result, "result"), Failure);
  EXPECT_THROW(RequireResult<OpenOptions>(nullptr, "result"), Failure);
}

TEST(ArgumentsTest, LentTextsEndWithNul) {
  char* const text = LendText("text");
  EXPECT_STREQ(text, "text");
  lumvik_host_free(text);
  char* const empty = LendText("");
  EXPECT_STREQ(empty, "");
  lumvik_host_free(empty);
}

}  // namespace
}  // namespace lumvik::host::test
