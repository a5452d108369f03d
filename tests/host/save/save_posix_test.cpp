// Saving to a full disk.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstddef>
#include <filesystem>
#include <string>

#include "lumvik_host.h"
#include "photo/test_photos.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::TempDir;

lumvik_host_save_options OptionsForFullDisk(bool has_profile) {
  lumvik_host_save_options options{};
  options.struct_size = sizeof(options);
  options.format = LUMVIK_HOST_FORMAT_PNG;
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  options.no_profile = has_profile ? 0 : 1;
  return options;
}

std::size_t SavedSize(const PhotoHandle& photo, bool has_profile) {
  const lumvik_host_save_options options = OptionsForFullDisk(has_profile);
  uint8_t* data = nullptr;
  std::size_t size = 0;
  EXPECT_EQ(lumvik_host_save_bytes(photo.get(), &options, &data, &size), LUMVIK_HOST_OK);
  lumvik_host_free(data);
  return size;
}

lumvik_host_status SaveWithLimit(const PhotoHandle& photo, const std::string& path, rlim_t bytes,
                                 const lumvik_host_save_options& options = OptionsForFullDisk(true)) {
  rlimit before{};
  ::getrlimit(RLIMIT_FSIZE, &before);
  const rlimit limit = {bytes, before.rlim_max};
  auto* const handler = std::signal(SIGXFSZ, SIG_DFL);
  ::setrlimit(RLIMIT_FSIZE, &limit);
  const lumvik_host_status status = lumvik_host_save(photo.get(), path.c_str(), &options);
  ::setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  return status;
}

TEST(SaveToFullDiskTest, StatusSaysSoAndNothingIsLeft) {
  const TempDir dir;
  const PhotoHandle photo = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_PNG));
  const std::size_t exported = SavedSize(photo, false);
  const std::size_t complete = SavedSize(photo, true);
  ASSERT_LT(exported, complete);
  // The export does not fit, then the profile does not.
  for (const std::size_t limit : {std::size_t{1}, exported - 1, exported, complete - 1}) {
    EXPECT_EQ(SaveWithLimit(photo, dir.File("a.png"), limit), LUMVIK_HOST_DISK_FULL) << limit;
    EXPECT_TRUE(std::filesystem::is_empty(dir.path())) << limit;
  }
  EXPECT_EQ(SaveWithLimit(photo, dir.File("a.png"), complete), LUMVIK_HOST_OK);
}

// A deep image is exported in full size before it is reduced.
TEST(SaveToFullDiskTest, StatusSaysSoOfReducedImages) {
  const TempDir dir;
  const PhotoHandle photo = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_PNG));
  for (const char* name : {"a.png", "a.tif"}) {
    lumvik_host_save_options options{};
    options.struct_size = sizeof(options);
    options.bits = 16;
    options.metadata = LUMVIK_HOST_METADATA_NONE;
    const std::string whole = dir.File(std::string("whole_") + name);
    options.no_profile = 1;
    ASSERT_EQ(lumvik_host_save(photo.get(), whole.c_str(), &options), LUMVIK_HOST_OK);
    const std::size_t exported = std::filesystem::file_size(whole);
    options.max_width = 48;
    options.no_profile = 0;
    for (std::size_t limit = 1; limit < exported; limit += exported / 40) {
      EXPECT_EQ(SaveWithLimit(photo, dir.File(name), limit, options), LUMVIK_HOST_DISK_FULL)
          << name << ' ' << limit << ": " << lumvik_host_last_error();
      EXPECT_FALSE(std::filesystem::exists(dir.File(name))) << limit;
    }
    EXPECT_EQ(SaveWithLimit(photo, dir.File(name), exported - 1, options), LUMVIK_HOST_DISK_FULL) << name;
    EXPECT_EQ(SaveWithLimit(photo, dir.File(name), exported, options), LUMVIK_HOST_OK) << name;
  }
}

}  // namespace
}  // namespace lumvik::host::test
