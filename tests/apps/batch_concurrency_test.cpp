// Several runs of `lumvik batch` into one folder at the same time.
#include <csignal>
#include <filesystem>
#include <map>
#include <opencv2/imgcodecs.hpp>
#include <random>
#include <thread>

#include "batch_fixture.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using NamedBytes = std::map<std::string, std::string>;

class BatchConcurrencyTest : public BatchTest {
 protected:
  static constexpr int kMany = 24;

  void WriteMany() const {
    for (int i = 0; i < kMany; ++i) {
      const std::string number = std::to_string(i);
      ASSERT_TRUE(cv::imwrite(In(number + ".png"), cv::Mat(40, 60, CV_8UC3, cv::Scalar(5 * i, 9 * i, 90))));
    }
  }

  NamedBytes OutputBytes() const {
    NamedBytes contents;
    for (const std::string& name : Outputs()) contents[name] = ReadFile(Out(name));
    return contents;
  }

  // Those of a single run.
  NamedBytes Expected() const {
    EXPECT_EQ(Batch().status, kSuccess);
    NamedBytes expected = OutputBytes();
    fs::remove_all(Out());
    return expected;
  }

  static int Count(const ProcessResult& result, const char* state) {
    return Json::parse(result.out).at(state);
  }
};

TEST_F(BatchConcurrencyTest, TwoRunsShareTheWork) {
  WriteMany();
  const NamedBytes expected = Expected();
  RunningProcess first(BatchCommand({"--resume", "--json"}));
  RunningProcess second(BatchCommand({"--resume", "--json"}));
  const ProcessResult results[] = {first.Wait(), second.Wait()};
  int developed = 0;
  for (const ProcessResult& result : results) {
    EXPECT_EQ(result.status, kSuccess) << result.err;
    EXPECT_EQ(Count(result, "developed") + Count(result, "skipped"), kMany) << result.err;
    developed += Count(result, "developed");
  }
  EXPECT_EQ(developed, kMany) << "a photograph was developed twice";
  EXPECT_EQ(OutputBytes(), expected);
}

TEST_F(BatchConcurrencyTest, ARunWaitsForAnother) {
  const std::string slow = SlowPhotograph("slow.png");
  Photograph("photos/a.png");
  RunningProcess first(BatchCommand({"--nr-luminance", "50"}));
  const pid_t worker = AwaitWorker(first.id(), slow);
  ASSERT_EQ(kill(worker, SIGSTOP), 0);
  Await([&] { return Outputs().size() == 1; });
  RunningProcess second(BatchCommand({"--nr-luminance", "50", "--json", "--resume"}));
  const std::string message = "lumvik: another run (process " + std::to_string(first.id()) +
                              ") is writing into '" + Out() + "'; waiting for it to finish 1 photograph\n";
  Await([&] { return second.ErrSoFar().find(message) != std::string::npos; });
  ASSERT_EQ(kill(worker, SIGCONT), 0);
  EXPECT_EQ(first.Wait().status, kSuccess);
  const ProcessResult result = second.Wait();
  EXPECT_EQ(result.status, kSuccess) << result.err;
  const Json photograph = Json::parse(result.out).at("photographs").at(1);
  EXPECT_EQ(photograph.at("status"), "skipped");
  EXPECT_EQ(photograph.at("reason"), "developed by another run");
  EXPECT_EQ(result.err.find(message), result.err.rfind(message)) << "said more than once";
}

TEST_F(BatchConcurrencyTest, TheWorkOfAKilledRunIsTakenOver) {
  const std::string slow = SlowPhotograph("slow.png");
  Photograph("photos/a.png");
  RunningProcess first(BatchCommand());
  ASSERT_EQ(kill(AwaitWorker(first.id(), slow), SIGSTOP), 0);
  RunningProcess second(BatchCommand({"--resume"}));
  Await([&] { return second.ErrSoFar().find("another run") != std::string::npos; });
  ASSERT_EQ(kill(first.id(), SIGKILL), 0);
  first.Wait();
  const ProcessResult result = second.Wait();
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_NE(result.out.find(Out("slow.jpg") + " 4000x3000\n"), std::string::npos) << result.out;
  EXPECT_EQ(Outputs(), std::set<std::string>({"a.jpg", "slow.jpg"}));
  EXPECT_FALSE(fs::exists(Out(".lumvik"))) << "the killed run's files are still there";
}

TEST_F(BatchConcurrencyTest, ARunWithNothingToDoCleansUp) {
  Photograph("photos/a.png");
  ASSERT_EQ(Batch().status, kSuccess);
  const std::string slow = SlowPhotograph("slow.png");
  RunningProcess killed(BatchCommand());
  AwaitWorker(killed.id(), slow);
  ASSERT_EQ(kill(killed.id(), SIGKILL), 0);
  killed.Wait();
  ExpectNoProcessLeft();
  fs::remove(slow);
  EXPECT_TRUE(fs::exists(Out(".lumvik")));
  EXPECT_EQ(Batch({"--resume"}).status, kSuccess);
  EXPECT_FALSE(fs::exists(Out(".lumvik")));
}

TEST_F(BatchConcurrencyTest, AWaitingRunCanBeInterrupted) {
  const std::string slow = SlowPhotograph("slow.png");
  RunningProcess first(BatchCommand());
  const pid_t worker = AwaitWorker(first.id(), slow);
  ASSERT_EQ(kill(worker, SIGSTOP), 0);
  RunningProcess second(BatchCommand());
  Await([&] { return second.ErrSoFar().find("another run") != std::string::npos; });
  ASSERT_EQ(kill(second.id(), SIGINT), 0);
  EXPECT_EQ(second.Wait().status, 128 + SIGINT);
  ASSERT_EQ(kill(worker, SIGCONT), 0);
  EXPECT_EQ(first.Wait().status, kSuccess);
  ExpectWholeOutputs();
}

TEST_F(BatchConcurrencyTest, KilledRunsDoNoHarm) {
  WriteMany();
  const NamedBytes expected = Expected();
  std::mt19937 random(7);
  for (int round = 0; round < 3; ++round) {
    fs::create_directory(Out());
    WriteFile(Out("foreign.txt"), "not ours");
    RunningProcess first(BatchCommand({"--resume"}));
    RunningProcess second(BatchCommand({"--resume"}));
    const std::size_t done = 1 + random() % (kMany / 2);
    Await([&] { return Outputs().size() > done; });
    std::this_thread::sleep_for(std::chrono::milliseconds(random() % 50));
    const bool is_first = random() % 2 == 0;
    ASSERT_EQ(kill(is_first ? first.id() : second.id(), SIGKILL), 0);
    const ProcessResult results[] = {first.Wait(), second.Wait()};
    EXPECT_EQ(results[is_first ? 0 : 1].status, 128 + SIGKILL) << "it was over before the signal came";
    EXPECT_EQ(results[is_first ? 1 : 0].status, kSuccess) << results[is_first ? 1 : 0].err;
    EXPECT_EQ(ReadFile(Out("foreign.txt")), "not ours");
    fs::remove(Out("foreign.txt"));
    EXPECT_EQ(OutputBytes(), expected) << "round " << round;
    const ProcessResult last = Batch({"--resume", "--json", "--overwrite"});
    EXPECT_EQ(Count(last, "skipped"), kMany);
    fs::remove_all(Out());
  }
}

}  // namespace
}  // namespace lumvik::test
