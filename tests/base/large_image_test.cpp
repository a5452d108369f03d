#include "base/large_image.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "support/counting_allocator.h"

namespace lumvik {
namespace {

constexpr size_t kMegabyte = 1 << 20;

const cv::Size kLarge(1024, 256);  // 1 MB of floats

TEST(LargeImage, HasTheSizeAndTheType) {
  const cv::Mat image = LargeImage({3, 5}, CV_32FC4);
  EXPECT_EQ(image.size(), cv::Size(3, 5));
  EXPECT_EQ(image.type(), CV_32FC4);
}

TEST(LargeImage, IsFreedAtOnce) {
  const test::CountingAllocator memory;
  LargeImage(kLarge, CV_32F);
  EXPECT_EQ(memory.Living(), 0);
  EXPECT_EQ(memory.Peak(), kMegabyte);
}

TEST(LargeImageReuse, TheSameMemoryServesTheNextImage) {
  const test::CountingAllocator memory;
  {
    const LargeImageReuse reuse;
    LargeImage(kLarge, CV_32F);
    EXPECT_EQ(memory.Living(), kMegabyte);
    LargeImage(kLarge, CV_32F);
    LargeImage(kLarge, CV_32F);
    EXPECT_EQ(memory.Peak(), kMegabyte);
  }
  EXPECT_EQ(memory.Living(), 0);
}

TEST(LargeImageReuse, TheImageHasItsOwnShape) {
  const LargeImageReuse reuse;
  LargeImage(kLarge, CV_32F).setTo(1);
  cv::Mat image = LargeImage({256, 512}, CV_16UC4);
  EXPECT_EQ(image.size(), cv::Size(256, 512));
  EXPECT_EQ(image.type(), CV_16UC4);
  EXPECT_EQ(image.step[0], 256 * 8);
  EXPECT_TRUE(image.isContinuous());
  image.setTo(7);
  EXPECT_EQ(cv::countNonZero(image.reshape(1) != 7), 0);
}

TEST(LargeImageReuse, AnImageInUseIsNotHandedOut) {
  const LargeImageReuse reuse;
  cv::Mat copy;
  {
    const cv::Mat image = LargeImage(kLarge, CV_32F);
    copy = image;
  }
  copy.setTo(1);
  LargeImage(kLarge, CV_32F).setTo(2);
  EXPECT_EQ(cv::countNonZero(copy != 1), 0);
}

TEST(LargeImageReuse, SmallImagesAreNotKept) {
  const test::CountingAllocator memory;
  const LargeImageReuse reuse;
  LargeImage({100, 100}, CV_32F);
  EXPECT_EQ(memory.Living(), 0);
}

TEST(LargeImageReuse, WhatIsKeptIsBounded) {
  const test::CountingAllocator memory;
  const LargeImageReuse reuse;
  std::vector<cv::Mat> images(12);
  for (cv::Mat& image : images) image = LargeImage({4096, 4096}, CV_32F);  // never touched
  images.clear();
  EXPECT_EQ(memory.Living(), LargeImageReuse::kMostKeptBytes);
}

TEST(LargeImageReuse, ALittleLargerWillDo) {
  const test::CountingAllocator memory;
  const LargeImageReuse reuse;
  LargeImage({1024, 320}, CV_32F);
  const size_t kept = memory.Living();
  const cv::Mat smaller = LargeImage(kLarge, CV_32F);
  EXPECT_EQ(memory.Living(), kept);
  EXPECT_EQ(smaller.size(), kLarge);
}

TEST(LargeImageReuse, MuchLargerWouldWasteMemory) {
  const test::CountingAllocator memory;
  const LargeImageReuse reuse;
  LargeImage({1024, 324}, CV_32F);
  const size_t kept = memory.Living();
  const cv::Mat smaller = LargeImage(kLarge, CV_32F);
  EXPECT_EQ(memory.Living(), kept + kMegabyte);
}

TEST(LargeImageReuse, TheOldestGoFirst) {
  const test::CountingAllocator memory;
  const LargeImageReuse reuse;
  int height = kLarge.height;
  for (int i = 0; i < 20; ++i, height = height * 13 / 10) LargeImage({kLarge.width, height}, CV_32F);
  const size_t kept = memory.Living();
  const cv::Mat newest = LargeImage({kLarge.width, height * 10 / 13}, CV_32F);
  EXPECT_EQ(memory.Living(), kept);
  const cv::Mat oldest = LargeImage(kLarge, CV_32F);
  EXPECT_EQ(memory.Living(), kept + kMegabyte);
}

TEST(LargeImageReuse, LastsAsLongAsTheLastUser) {
  const test::CountingAllocator memory;
  {
    const LargeImageReuse one;
    {
      const LargeImageReuse other;
      LargeImage(kLarge, CV_32F);
    }
    EXPECT_EQ(memory.Living(), kMegabyte);
  }
  EXPECT_EQ(memory.Living(), 0);
}

TEST(LargeImageReuse, AnImageMayOutliveIt) {
  const test::CountingAllocator memory;
  {
    cv::Mat image;
    {
      const LargeImageReuse reuse;
      image = LargeImage(kLarge, CV_32F);
    }
    image.setTo(1);
    EXPECT_EQ(memory.Living(), kMegabyte);
  }
  EXPECT_EQ(memory.Living(), 0);
}

TEST(LargeImageReuse, ThreadsNeverShareAnImage) {
  const test::CountingAllocator memory;
  std::atomic<int> wrong{0};
  {
    const LargeImageReuse reuse;
    std::vector<std::thread> threads;
    for (int thread = 1; thread <= 4; ++thread) {
      threads.emplace_back([thread, &wrong] {
        for (int i = 0; i < 200; ++i) {
          cv::Mat image = LargeImage(kLarge, CV_32S);
          image.setTo(thread);
          if (cv::countNonZero(image != thread) != 0) ++wrong;
        }
      });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_LE(memory.Peak(), 4 * kMegabyte + 4 * kMegabyte) << "four in use, and one on its way to each";
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(memory.Living(), 0);
}

}  // namespace
}  // namespace lumvik
