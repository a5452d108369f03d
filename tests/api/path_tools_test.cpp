// The functions that take a path instead of a context: status codes and outputs.
#include <atomic>
#include <cstdlib>
#include <fstream>
#include <opencv2/imgcodecs.hpp>
#include <thread>

#include "api_test.h"
#include "reference/perceptual_hash.h"
#include "support/broken_raw.h"
#include "support/raw_previews.h"

namespace {

// The size for which malloc fails; 0: none. Linked with --wrap=malloc. Not thread_local, because on Windows
// that would call malloc.
std::atomic<size_t> refused_size{0};

}  // namespace

extern "C" void* __real_malloc(size_t size);
extern "C" void* __wrap_malloc(size_t size) {
  return size != 0 && size == refused_size ? nullptr : __real_malloc(size);
}

namespace lumvik::test {
namespace {

constexpr uint64_t kOldHash = 0x5A5A5A5A5A5A5A5A;

struct FailingFile {
  std::string path;
  int thumbnail;
  int hash;
};

class PathToolsTest : public ApiTest {
 protected:
  std::string Written(const std::string& name, const Bytes& bytes) const {
    return WriteBytes(Path(name), bytes);
  }

  // An undecodable JPEG preview is still a valid thumbnail.
  std::vector<FailingFile> FailingFiles() const {
    return {
        {Path("missing.png"), -1, -1},
        {Path("missing.arw"), -1, -1},
        {Written("photo.txt", ReadBytes(WritePicture("a.png"))), -1, -1},
        {Written("empty.jpg", {}), -1, -1},
        {Written("empty.arw", {}), -1, -1},
        {LUMVIK_TEST_DATA "/no_thumb.dng", -2, -2},
        {Written("damaged.dng", MakeDamagedPreviewRaw()), -3, -3},
        {Written("short.dng", MakeShortBitmapPreviewRaw(SmallPicture())), -3, -4},
        {Written("undecodable.dng", MakeUndecodablePreviewRaw()), 0, -4},
    };
  }
};

TEST_F(PathToolsTest, FailuresHaveTheirOwnCodesAndClearTheOutputs) {
  uint8_t old = 0;
  for (const FailingFile& file : FailingFiles()) {
    SCOPED_TRACE(file.path);
    uint64_t hash = kOldHash;
    EXPECT_EQ(lumvik_phash(file.path.c_str(), &hash), file.hash);
    EXPECT_EQ(hash, 0U);
    uint8_t* data = &old;
    int size = 99;
    EXPECT_EQ(lumvik_extract_thumbnail(file.path.c_str(), &data, &size), file.thumbnail);
    if (file.thumbnail == LUMVIK_OK) {
      EXPECT_GT(size, 0);
      lumvik_free_thumb(data);
      continue;
    }
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 0);
  }
}

TEST_F(PathToolsTest, NullArgumentsLeaveTheOutputsUntouched) {
  const std::string path = WritePicture("a.png");
  uint8_t old = 0;
  uint8_t* data = &old;
  int size = 99;
  EXPECT_EQ(lumvik_extract_thumbnail(nullptr, &data, &size), kFailed);
  EXPECT_EQ(lumvik_extract_thumbnail(path.c_str(), nullptr, &size), kFailed);
  EXPECT_EQ(lumvik_extract_thumbnail(path.c_str(), &data, nullptr), kFailed);
  EXPECT_EQ(data, &old);
  EXPECT_EQ(size, 99);
  uint64_t hash = kOldHash;
  EXPECT_EQ(lumvik_phash(nullptr, &hash), kFailed);
  EXPECT_EQ(lumvik_phash(path.c_str(), nullptr), kFailed);
  EXPECT_EQ(hash, kOldHash);
  lumvik_free_thumb(nullptr);
}

TEST_F(PathToolsTest, ReturnsAThumbnail) {
  const std::string path = WritePicture("\xC3\xA9t\xC3\xA9.png");
  Bytes expected;
  cv::imencode(".jpg", SmallPicture(), expected, {cv::IMWRITE_JPEG_QUALITY, 75});
  uint8_t* data = nullptr;
  int size = 0;
  ASSERT_EQ(lumvik_extract_thumbnail(path.c_str(), &data, &size), LUMVIK_OK);
  EXPECT_TRUE(Bytes(data, data + size) == expected);
  lumvik_free_thumb(data);
}

TEST_F(PathToolsTest, ReturnsThePreviewOfARawFile) {
  const std::string path = LUMVIK_SAMPLES "/sample_small.ARW";
  uint8_t* data = nullptr;
  int size = 0;
  ASSERT_EQ(lumvik_extract_thumbnail(path.c_str(), &data, &size), LUMVIK_OK);
  EXPECT_TRUE(SameDelivery(Bytes(data, data + size), DeliveredPreview(ReadBytes(path))));
  lumvik_free_thumb(data);
}

TEST_F(PathToolsTest, OutOfMemoryReportsTheSizeNeeded) {
  const std::string path = LUMVIK_SAMPLES "/sample_small.ARW";
  const int needed = static_cast<int>(DeliveredPreview(ReadBytes(path)).size());
  uint8_t old = 0;
  uint8_t* data = &old;
  int size = 0;
  refused_size = static_cast<size_t>(needed);
  const int status = lumvik_extract_thumbnail(path.c_str(), &data, &size);
  refused_size = 0;
  EXPECT_EQ(status, -4);
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(size, needed);
}

TEST_F(PathToolsTest, ReturnsAHash) {
  const std::string path = WritePicture("a.png");
  uint64_t hash = 0;
  ASSERT_EQ(lumvik_phash(path.c_str(), &hash), LUMVIK_OK);
  EXPECT_EQ(hash, reference::PerceptualHash(cv::imread(path, cv::IMREAD_GRAYSCALE)));
  EXPECT_NE(hash, 0U);
}

TEST_F(PathToolsTest, ConcurrentHashesEqualSequentialOnes) {
  const std::vector<std::string> paths = {
      LUMVIK_TEST_DATA "/cat.jpg", LUMVIK_TEST_DATA "/bitmap_thumb.dng", LUMVIK_TEST_DATA "/jpeg_thumb.dng",
      LUMVIK_TEST_DATA "/no_thumb.dng", LUMVIK_SAMPLES "/sample_small.ARW"};
  const auto hash_all = [&paths] {
    std::vector<uint64_t> hashes;
    for (const std::string& path : paths) {
      hashes.emplace_back();
      lumvik_phash(path.c_str(), &hashes.back());
    }
    return hashes;
  };
  std::vector<std::vector<uint64_t>> together(4);
  std::vector<std::thread> threads;
  for (auto& hashes : together) threads.emplace_back([&] { hashes = hash_all(); });
  for (std::thread& thread : threads) thread.join();
  const std::vector<uint64_t> alone = hash_all();
  EXPECT_EQ(std::count(alone.begin(), alone.end(), 0U), 1);
  for (const auto& hashes : together) EXPECT_EQ(hashes, alone);
}

}  // namespace
}  // namespace lumvik::test
