// Versions and the names of statuses.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "lumvik.h"
#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

TEST(GeneralTest, VersionIsThatOfTheHeader) {
  EXPECT_EQ(lumvik_host_version(), std::to_string(LUMVIK_HOST_VERSION_MAJOR) + '.' +
                                       std::to_string(LUMVIK_HOST_VERSION_MINOR) + '.' +
                                       std::to_string(LUMVIK_HOST_VERSION_PATCH));
  EXPECT_STREQ(lumvik_host_engine_version(), lumvik_version());
}

TEST(GeneralTest, EveryStatusHasItsOwnName) {
  std::set<std::string> names;
  for (int status = LUMVIK_HOST_OK; status <= LUMVIK_HOST_INTERNAL; ++status) {
    names.insert(lumvik_host_status_name(status));
  }
  EXPECT_EQ(names.size(), LUMVIK_HOST_INTERNAL + 1U);
  EXPECT_EQ(names.count("unknown"), 0U);
  EXPECT_STREQ(lumvik_host_status_name(LUMVIK_HOST_DISK_FULL), "disk_full");
  EXPECT_STREQ(lumvik_host_status_name(LUMVIK_HOST_INTERNAL), "internal");
}

TEST(GeneralTest, NamesOfOtherValuesAreUnknown) {
  for (const int status : {-1, LUMVIK_HOST_INTERNAL + 1, 1 << 30}) {
    EXPECT_STREQ(lumvik_host_status_name(status), "unknown");
  }
}

TEST(GeneralTest, FreeIgnoresWhatWasNotLent) {
  int local = 0;
  lumvik_host_free(nullptr);
  lumvik_host_free(&local);
  EXPECT_EQ(local, 0);
}

}  // namespace
}  // namespace lumvik::host::test
