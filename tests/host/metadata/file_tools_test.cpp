// Thumbnails and hashes of files.
#include <gtest/gtest.h>

#include <cstdint>
#include <opencv2/imgcodecs.hpp>
#include <string>
#include <utility>
#include <vector>

#include "lumvik.h"
#include "lumvik_host.h"
#include "metadata/metadata_fixture.h"
#include "support/file_bytes.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ReadBytes;
using lumvik::test::WriteBytes;

const std::string kRaw = LUMVIK_SAMPLES "/sample_small.ARW";

class FileToolsTest : public MetadataFixture {
 protected:
  struct HostThumbnail {
    lumvik_host_status status;
    std::vector<std::uint8_t> jpeg;
    std::int32_t width = -1;
    std::int32_t height = -1;
  };
  static HostThumbnail ThumbnailOf(const std::string& path) {
    std::uint8_t* data = nullptr;
    std::size_t size = 0;
    HostThumbnail thumbnail;
    thumbnail.status = lumvik_host_extract_thumbnail(path.c_str(), nullptr, &data, &size, &thumbnail.width,
                                                     &thumbnail.height);
    thumbnail.jpeg.assign(data, data + size);
    lumvik_host_free(data);
    return thumbnail;
  }

  static std::string Text() { return lumvik_host_last_error(); }
};

TEST_F(FileToolsTest, TheSizeOfAThumbnailIsOptional) {
  std::uint8_t* data = nullptr;
  std::size_t size = 0;
  EXPECT_EQ(lumvik_host_extract_thumbnail(kRaw.c_str(), nullptr, &data, &size, nullptr, nullptr),
            LUMVIK_HOST_OK);
  EXPECT_GT(size, 0U);
  lumvik_host_free(data);
}

TEST_F(FileToolsTest, TheHashIsThatOfTheEngine) {
  std::uint64_t expected = 0;
  std::uint64_t hash = 0;
  ASSERT_EQ(lumvik_phash(kRaw.c_str(), &expected), 0);
  EXPECT_EQ(lumvik_host_hash(kRaw.c_str(), &hash), LUMVIK_HOST_OK);
  EXPECT_EQ(hash, expected);
  EXPECT_NE(hash, 0U);
}

TEST_F(FileToolsTest, FailuresStateTheReasonAndWriteNothing) {
  const struct {
    std::string path;
    lumvik_host_status status;
    const char* reason;
  } cases[] = {
      {Path("none.jpg"), LUMVIK_HOST_NOT_FOUND, "there is no such file"},
      {Path(""), LUMVIK_HOST_INVALID_ARGUMENT, "it is a folder"},
      {LUMVIK_TEST_DATA "/no_thumb.dng", LUMVIK_HOST_UNSUPPORTED, "the RAW file has no preview"},
  };
  for (const auto& expected : cases) {
    const std::string text = "cannot read '" + expected.path + "': " + expected.reason;
    const HostThumbnail thumbnail = ThumbnailOf(expected.path);
    EXPECT_EQ(thumbnail.status, expected.status) << expected.path;
    EXPECT_EQ(Text(), text);
    EXPECT_TRUE(thumbnail.jpeg.empty());
    EXPECT_EQ(thumbnail.width, -1);
    std::uint64_t hash = 7;
    EXPECT_EQ(lumvik_host_hash(expected.path.c_str(), &hash), expected.status) << expected.path;
    EXPECT_EQ(Text(), text);
    EXPECT_EQ(hash, 7U);
  }
}

TEST_F(FileToolsTest, TheContentCountsNotTheName) {
  for (const auto& [path, name] : {std::pair<std::string, std::string>{kRaw, "raw.jpg"},
                                   {LUMVIK_TEST_DATA "/tower_orientation8.jpg", "image.ARW"},
                                   {LUMVIK_TEST_DATA "/tower_orientation8.jpg", "image"}}) {
    const std::string misnamed = WriteBytes(Path(name), ReadBytes(path));
    const HostThumbnail thumbnail = ThumbnailOf(misnamed);
    EXPECT_EQ(thumbnail.status, LUMVIK_HOST_OK) << Text();
    EXPECT_EQ(thumbnail.jpeg, ThumbnailOf(path).jpeg);
    std::uint64_t expected = 0;
    std::uint64_t hash = 1;
    EXPECT_EQ(lumvik_host_hash(path.c_str(), &expected), LUMVIK_HOST_OK);
    EXPECT_EQ(lumvik_host_hash(misnamed.c_str(), &hash), LUMVIK_HOST_OK);
    EXPECT_EQ(hash, expected);
  }
}

TEST_F(FileToolsTest, WhatIsNoPhotographIsNotCalledDamaged) {
  const std::string text = WriteBytes(Path("in.jpg"), {'t', 'e', 'x', 't'});
  EXPECT_EQ(ThumbnailOf(text).status, LUMVIK_HOST_NOT_A_PHOTOGRAPH);
  const std::vector<std::uint8_t> jpeg = ReadBytes(PlainImage("whole.jpg"));
  const std::string cut = WriteBytes(Path("cut.jpg"), {jpeg.begin(), jpeg.begin() + 20});
  EXPECT_EQ(ThumbnailOf(cut).status, LUMVIK_HOST_DAMAGED);
  EXPECT_EQ(Text(), "cannot read '" + cut + "': it is damaged");
  std::uint64_t hash = 0;
  EXPECT_EQ(lumvik_host_hash(cut.c_str(), &hash), LUMVIK_HOST_DAMAGED);
}

TEST_F(FileToolsTest, NullArgumentsAreRefused) {
  std::uint8_t* data = nullptr;
  std::size_t size = 0;
  std::uint64_t hash = 0;
  EXPECT_EQ(lumvik_host_extract_thumbnail(nullptr, nullptr, &data, &size, nullptr, nullptr),
            LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(Text(), "path is null");
  EXPECT_EQ(lumvik_host_extract_thumbnail(kRaw.c_str(), nullptr, nullptr, &size, nullptr, nullptr),
            LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(Text(), "data is null");
  EXPECT_EQ(lumvik_host_extract_thumbnail(kRaw.c_str(), nullptr, &data, nullptr, nullptr, nullptr),
            LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(Text(), "size is null");
  EXPECT_EQ(lumvik_host_hash(nullptr, &hash), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_hash(kRaw.c_str(), nullptr), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(Text(), "hash is null");
}

}  // namespace
}  // namespace lumvik::host::test
