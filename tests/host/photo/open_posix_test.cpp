// What opening a photograph leaves in the folder for temporary files.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "photo/test_photos.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

class TemporaryFilesTest : public testing::Test {
 protected:
  TemporaryFilesTest() {
    const char* const given = std::getenv("TMPDIR");
    if (given != nullptr) before_ = given;
    ::setenv("TMPDIR", folder_.path().c_str(), 1);
  }
  ~TemporaryFilesTest() override {
    before_.empty() ? ::unsetenv("TMPDIR") : ::setenv("TMPDIR", before_.c_str(), 1);
  }
  TemporaryFilesTest(const TemporaryFilesTest&) = delete;
  TemporaryFilesTest& operator=(const TemporaryFilesTest&) = delete;

  std::vector<std::filesystem::path> Left() const {
    const std::filesystem::directory_iterator entries(folder_.path());
    return {begin(entries), end(entries)};
  }

 private:
  lumvik::test::TempDir folder_;
  std::string before_;
};

TEST_F(TemporaryFilesTest, AreOnlyForThisUserAndRemovedOnClosing) {
  PhotoHandle photo = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_JPEG));
  ASSERT_EQ(Left().size(), 1U);
  EXPECT_EQ(std::filesystem::status(Left().front()).permissions(), std::filesystem::perms::owner_all);
  photo.reset();
  EXPECT_EQ(Left().size(), 0U);
}

TEST_F(TemporaryFilesTest, AreNotNeededForRawBytes) {
  const PhotoHandle photo = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_RAW));
  EXPECT_EQ(Left().size(), 0U);
}

TEST_F(TemporaryFilesTest, AreRemovedWhenOpeningFails) {
  Bytes bytes = PhotoBytes(LUMVIK_HOST_FORMAT_JPEG);
  bytes.resize(40);
  lumvik_host_photo* photo = nullptr;
  EXPECT_EQ(lumvik_host_open_bytes(bytes.data(), bytes.size(), nullptr, &photo), LUMVIK_HOST_DAMAGED);
  EXPECT_EQ(Left().size(), 0U);
}

}  // namespace
}  // namespace lumvik::host::test
