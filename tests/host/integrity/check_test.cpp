// The exported checks for damage.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "lumvik_host.h"
#include "photo/test_photos.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::TempDir;
using lumvik::test::WriteBytes;
using ::testing::HasSubstr;

lumvik_host_integrity EmptyIntegrity() {
  lumvik_host_integrity integrity{};
  integrity.struct_size = sizeof(integrity);
  return integrity;
}

constexpr lumvik_host_format kCheckedFormats[] = {LUMVIK_HOST_FORMAT_RAW, LUMVIK_HOST_FORMAT_JPEG,
                                                  LUMVIK_HOST_FORMAT_PNG, LUMVIK_HOST_FORMAT_TIFF,
                                                  LUMVIK_HOST_FORMAT_BMP, LUMVIK_HOST_FORMAT_WEBP};

TEST(CheckTest, WholeFilesAndPhotosAreOk) {
  const TempDir dir;
  for (const lumvik_host_format format : kCheckedFormats) {
    const std::string path = WriteBytes(dir.File("photo"), PhotoBytes(format));
    lumvik_host_integrity integrity = EmptyIntegrity();
    EXPECT_EQ(lumvik_host_check_file(path.c_str(), &integrity), LUMVIK_HOST_OK) << lumvik_host_last_error();
    EXPECT_EQ(integrity.format, format);
    EXPECT_EQ(integrity.is_whole, 1);
    EXPECT_STREQ(integrity.reason, "");
    integrity = EmptyIntegrity();
    EXPECT_EQ(lumvik_host_check(OpenBytesForTest(PhotoBytes(format)).get(), &integrity), LUMVIK_HOST_OK);
    EXPECT_EQ(integrity.is_whole, 1);
  }
}

TEST(CheckTest, DamagedFileIsDescribed) {
  const TempDir dir;
  Bytes bytes = PhotoBytes(LUMVIK_HOST_FORMAT_BMP);
  bytes.resize(bytes.size() - 10);
  const std::string path = WriteBytes(dir.File("a.bmp"), bytes);
  lumvik_host_integrity integrity = EmptyIntegrity();
  EXPECT_EQ(lumvik_host_check_file(path.c_str(), &integrity), LUMVIK_HOST_DAMAGED);
  EXPECT_EQ(integrity.format, LUMVIK_HOST_FORMAT_BMP);
  EXPECT_EQ(integrity.is_whole, 0);
  EXPECT_EQ(integrity.missing_bytes, 10U);
  EXPECT_STREQ(integrity.reason, "the data ends 10 bytes early");
  EXPECT_EQ(lumvik_host_last_error(), "'" + path + "' is damaged: the data ends 10 bytes early");
}

TEST(CheckTest, DamagedPhotoCanBeOpenedAndIsDescribed) {
  const PhotoHandle photo = OpenForTest(LUMVIK_TEST_DATA "/truncated.ARW");
  lumvik_host_integrity integrity = EmptyIntegrity();
  EXPECT_EQ(lumvik_host_check(photo.get(), &integrity), LUMVIK_HOST_DAMAGED);
  EXPECT_EQ(integrity.format, LUMVIK_HOST_FORMAT_RAW);
  EXPECT_GT(integrity.missing_bytes, 0U);
  EXPECT_THAT(integrity.reason, HasSubstr("bytes early"));
}

TEST(CheckTest, OtherFilesAndArgumentsAreReported) {
  const TempDir dir;
  const std::string text = WriteBytes(dir.File("a.txt"), Bytes(200, 'a'));
  lumvik_host_integrity integrity = EmptyIntegrity();
  EXPECT_EQ(lumvik_host_check_file(text.c_str(), &integrity), LUMVIK_HOST_NOT_A_PHOTOGRAPH);
  EXPECT_EQ(lumvik_host_check_file(dir.File("none").c_str(), &integrity), LUMVIK_HOST_NOT_FOUND);
  EXPECT_EQ(lumvik_host_check_file(nullptr, &integrity), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_check_file(text.c_str(), nullptr), LUMVIK_HOST_INVALID_ARGUMENT);
  integrity.struct_size = 8;
  EXPECT_EQ(lumvik_host_check_file(text.c_str(), &integrity), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_check(nullptr, &integrity), LUMVIK_HOST_INVALID_HANDLE);
}

}  // namespace
}  // namespace lumvik::host::test
