// Fingerprints of files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "lumvik_host.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::TempDir;
using lumvik::test::WriteBytes;
using ::testing::HasSubstr;

constexpr std::size_t kEnd = 1 << 16;

class FingerprintTest : public ::testing::Test {
 protected:
  std::uint64_t Of(const std::vector<std::uint8_t>& bytes) {
    const std::string path = WriteBytes(dir_.File("a"), bytes);
    std::uint64_t fingerprint = 0;
    EXPECT_EQ(lumvik_host_fingerprint(path.c_str(), &fingerprint), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    return fingerprint;
  }

  static std::vector<std::uint8_t> Varied(std::size_t size) {
    std::vector<std::uint8_t> bytes(size);
    std::uint32_t state = 1;
    for (std::uint8_t& byte : bytes)
      byte = static_cast<std::uint8_t>((state = state * 1664525 + 1013904223) >> 24);
    return bytes;
  }

  TempDir dir_;
};

TEST_F(FingerprintTest, IsThatOfTheContent) {
  for (const std::size_t size : {std::size_t{0}, std::size_t{1}, kEnd, 2 * kEnd, 3 * kEnd}) {
    const std::vector<std::uint8_t> bytes = Varied(size);
    const std::uint64_t fingerprint = Of(bytes);
    EXPECT_EQ(Of(bytes), fingerprint) << size;
    const std::string copy = dir_.File("another name.arw");
    std::filesystem::remove(copy);
    std::filesystem::copy(dir_.File("a"), copy);
    std::uint64_t of_copy = 0;
    EXPECT_EQ(lumvik_host_fingerprint(copy.c_str(), &of_copy), LUMVIK_HOST_OK);
    EXPECT_EQ(of_copy, fingerprint) << size;
  }
}

TEST_F(FingerprintTest, EveryByteOfTheEndsCounts) {
  constexpr std::size_t kSize = 3 * kEnd;
  std::vector<std::uint8_t> bytes = Varied(kSize);
  std::set<std::uint64_t> seen = {Of(bytes)};
  for (const std::size_t at : {std::size_t{0}, kEnd / 2, kEnd - 1, kSize - kEnd, kSize - 1}) {
    bytes[at] ^= 1U;
    EXPECT_TRUE(seen.insert(Of(bytes)).second) << at;
    bytes[at] ^= 1U;
  }
}

TEST_F(FingerprintTest, EveryByteOfASmallFileCounts) {
  std::vector<std::uint8_t> bytes = Varied(kEnd + 1000);
  std::set<std::uint64_t> seen = {Of(bytes)};
  for (const std::size_t at : {std::size_t{0}, kEnd - 1, kEnd, kEnd + 999}) {
    bytes[at] ^= 1U;
    EXPECT_TRUE(seen.insert(Of(bytes)).second) << at;
    bytes[at] ^= 1U;
  }
}

TEST_F(FingerprintTest, TheSizeCounts) {
  std::set<std::uint64_t> seen;
  for (const std::size_t size :
       {std::size_t{0}, std::size_t{1}, std::size_t{2}, 2 * kEnd, 2 * kEnd + 1, 3 * kEnd}) {
    EXPECT_TRUE(seen.insert(Of(std::vector<std::uint8_t>(size))).second) << size;
  }
}

TEST_F(FingerprintTest, FilesThatCannotBeReadHaveNone) {
  std::uint64_t fingerprint = 7;
  EXPECT_EQ(lumvik_host_fingerprint(dir_.File("none").c_str(), &fingerprint), LUMVIK_HOST_NOT_FOUND);
  EXPECT_THAT(lumvik_host_last_error(), HasSubstr("there is no such file"));
  EXPECT_EQ(lumvik_host_fingerprint(dir_.path().u8string().c_str(), &fingerprint),
            LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_fingerprint(nullptr, &fingerprint), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(lumvik_host_fingerprint("a", nullptr), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(fingerprint, 7U);
}

}  // namespace
}  // namespace lumvik::host::test
