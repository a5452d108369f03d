// One photo used by many threads, and closed meanwhile.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "photo/test_photos.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

constexpr int kThreads = 8;
constexpr int kRounds = 20;

template <typename Work>
void InThreads(const Work& work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) threads.emplace_back([&work, i] { work(i); });
  for (std::thread& thread : threads) thread.join();
}

class PhotoThreadTest : public testing::Test {
 protected:
  PhotoHandle photo_ = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_PNG));
};

TEST_F(PhotoThreadTest, EveryCallIsServed) {
  std::vector<TestPreview> expected;
  for (int i = 0; i < kThreads; ++i) {
    SetForTest(photo_, {{"exposure", static_cast<float>(i) / 4}});
    expected.push_back(PreviewForTest(photo_));
  }
  std::atomic<int> strange{0};
  InThreads([&](int thread) {
    for (int round = 0; round < kRounds; ++round) {
      SetForTest(photo_, {{"exposure", static_cast<float>(thread) / 4}});
      const TestPreview preview = PreviewForTest(photo_);
      if (std::find(expected.begin(), expected.end(), preview) == expected.end()) ++strange;
      lumvik_host_histogram histogram{};
      if (lumvik_host_get_histogram(photo_.get(), &histogram) != LUMVIK_HOST_OK) ++strange;
      if (InfoForTest(photo_).width != preview.width) ++strange;
    }
  });
  EXPECT_EQ(strange, 0);
}

TEST_F(PhotoThreadTest, ClosingGivesTheOthersAnInvalidHandle) {
  lumvik_host_photo* const handle = photo_.get();
  std::atomic<int> others{0};
  std::atomic<int> rounds{0};
  InThreads([&](int thread) {
    for (;;) {
      if (thread == 0 && rounds >= kRounds) {
        photo_.reset();
        return;
      }
      const lumvik_host_status status = lumvik_host_render(handle);
      ++rounds;
      if (status == LUMVIK_HOST_INVALID_HANDLE) return;
      if (status != LUMVIK_HOST_OK) ++others;
    }
  });
  EXPECT_EQ(others, 0);
}

TEST_F(PhotoThreadTest, TheErrorIsThatOfThePhotoInAnyThread) {
  std::array<char, 200> text{};
  EXPECT_EQ(lumvik_host_get_error(photo_.get(), text.data(), text.size()), LUMVIK_HOST_OK);
  EXPECT_STREQ(text.data(), "");
  std::thread([&] { lumvik_host_get_info(photo_.get(), nullptr); }).join();
  EXPECT_EQ(lumvik_host_get_error(photo_.get(), text.data(), text.size()), LUMVIK_HOST_OK);
  EXPECT_STREQ(text.data(), "info is null");
  EXPECT_EQ(lumvik_host_get_error(photo_.get(), text.data(), 5), LUMVIK_HOST_OK);
  EXPECT_STREQ(text.data(), "info");
}

TEST_F(PhotoThreadTest, ClosedAndMadeUpHandlesAreRefused) {
  lumvik_host_photo* const handle = photo_.release();
  EXPECT_EQ(lumvik_host_close(handle), LUMVIK_HOST_OK);
  EXPECT_EQ(lumvik_host_render(handle), LUMVIK_HOST_INVALID_HANDLE);
  EXPECT_EQ(lumvik_host_close(handle), LUMVIK_HOST_INVALID_HANDLE);
  EXPECT_EQ(lumvik_host_close(nullptr), LUMVIK_HOST_OK);
  EXPECT_EQ(lumvik_host_render(nullptr), LUMVIK_HOST_INVALID_HANDLE);
}

}  // namespace
}  // namespace lumvik::host::test
