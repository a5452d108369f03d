// Memory estimates of a batch and the number of workers they allow.
#include <sys/resource.h>

#include <opencv2/imgcodecs.hpp>

#include "batch/memory.h"
#include "command_test.h"

namespace lumvik::test {
namespace {

TEST(WorkersThatFit, AreLimitedByJobsAndMemory) {
  EXPECT_EQ(WorkersThatFit({10, 10, 10, 10}, 4, 40), 4U);
  EXPECT_EQ(WorkersThatFit({10, 10, 10, 10}, 4, 39), 3U);
  EXPECT_EQ(WorkersThatFit({10, 10, 10, 10}, 2, 1000), 2U);
}

TEST(WorkersThatFit, AssumesTheLargestPhotographsRunTogether) {
  EXPECT_EQ(WorkersThatFit({10, 30, 10, 20}, 4, 50), 2U);
  EXPECT_EQ(WorkersThatFit({10, 30, 10, 20}, 4, 49), 1U);
  EXPECT_EQ(WorkersThatFit({10, 30, 10, 20}, 4, 60), 3U);
}

TEST(WorkersThatFit, AreAtMostOnePerPhotographAndAtLeastOne) {
  EXPECT_EQ(WorkersThatFit({10, 10}, 8, 1000), 2U);
  EXPECT_EQ(WorkersThatFit({10, 10}, 8, 9), 1U);
  EXPECT_EQ(WorkersThatFit({10, 10}, 8, 0), 1U);
}

TEST(MemoryToDevelop, GrowsWithTheImageSize) {
  const std::uint64_t empty = MemoryToDevelop(0, 0, true);
  EXPECT_GT(empty, 0U);
  EXPECT_EQ(MemoryToDevelop(1000, 1000, true), empty + 64'000'000U);
  // Decoding depends on the full size, developing on the reduced size.
  EXPECT_EQ(MemoryToDevelop(20000, 10000, true), empty + 2'000'000'000U);
  EXPECT_EQ(MemoryToDevelop(6000, 4000, false), empty + 576'000'000U);
  EXPECT_LT(MemoryToDevelop(6000, 1000, true), MemoryToDevelop(6000, 4000, true));
  // A damaged header may claim a size whose bytes overflow.
  EXPECT_GE(MemoryToDevelop(1 << 30, 715827883, false), MemoryToDevelop(60000, 60000, false));
}

class BatchMemoryTest : public CommandTest {};

// Compares with the peak memory of the only child process so far.
TEST_F(BatchMemoryTest, DevelopingStaysWithinTheEstimate) {
#if defined(LUMVIK_SANITIZE_ADDRESS) || defined(LUMVIK_SANITIZE_THREAD)
  GTEST_SKIP() << "the sanitizer itself needs memory";
#endif
  const cv::Size size(5000, 3500);
  cv::Mat noise(size, CV_8UC3);
  cv::randu(noise, 0, 256);
  ASSERT_TRUE(cv::imwrite(Path("in.jpg"), noise));
  const std::vector<std::string> stages = {"--auto",          "--auto-straighten",
                                           "--clarity",       "30",
                                           "--texture",       "20",
                                           "--dehaze",        "20",
                                           "--nr-luminance",  "20",
                                           "--nr-color",      "20",
                                           "--distortion",    "20",
                                           "--ca-correction", "20",
                                           "--perspective-h", "10",
                                           "--grain-amount",  "20",
                                           "--highlights",    "20"};
  ASSERT_EQ(Develop(Path("in.jpg"), Path("out.tif"), stages).status, kSuccess);
  rusage usage = {};
  ASSERT_EQ(getrusage(RUSAGE_CHILDREN, &usage), 0);
  const std::uint64_t taken = static_cast<std::uint64_t>(usage.ru_maxrss) * 1024;
  const std::uint64_t reckoned = MemoryToDevelop(5000, 3500, true);
  EXPECT_LT(taken, reckoned);
  EXPECT_GT(taken, reckoned / 4) << "the estimate has become needlessly large";
}

}  // namespace
}  // namespace lumvik::test
