// `lumvik batch` interrupted and resumed.
#include <csignal>
#include <filesystem>
#include <map>

#include "batch_fixture.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class BatchInterruptionTest : public BatchTest {
 protected:
  static constexpr std::size_t kBefore = 8;
  static constexpr std::size_t kAll = kPhotographs + 1;
  static constexpr std::size_t kGood = kAll - kBroken;

  // The slow one sorts after two thirds of the others.
  BatchInterruptionTest() : slow_(SlowPhotograph("slow.png")) { WritePhotographs(); }

  // Sends the signal when some photographs are done and a stopped worker holds another one.
  ProcessResult Interrupt(int signal, const std::vector<std::string>& options = {}) const {
    RunningProcess batch(BatchCommand(options));
    EXPECT_EQ(kill(AwaitWorker(batch.id(), slow_), SIGSTOP), 0);
    EXPECT_EQ(kill(batch.id(), signal), 0);
    ProcessResult result = batch.Wait();
    ExpectNoProcessLeft();
    return result;
  }

  void ExpectNothingTemporary() { TearDown(); }

  // Expects that existing outputs are kept and the others are added.
  void ExpectResumed() const {
    ExpectWholeOutputs();
    std::map<std::string, fs::file_time_type> before;
    for (const std::string& name : Outputs()) before[name] = fs::last_write_time(Out(name));
    EXPECT_GE(before.size(), kBefore);
    ASSERT_LT(before.size(), kGood) << "it was over before the signal came";

    const ProcessResult result = Batch({"--resume", "--json"});
    EXPECT_EQ(result.status, kFailure);
    const Json json = Json::parse(result.out);
    EXPECT_EQ(json.at("skipped"), before.size());
    EXPECT_EQ(json.at("developed"), kGood - before.size());
    EXPECT_EQ(json.at("failed").get<int>() + json.at("damaged").get<int>(), kBroken);
    EXPECT_EQ(Outputs().size(), kGood);
    ExpectWholeOutputs();
    for (const auto& [name, time] : before) EXPECT_EQ(fs::last_write_time(Out(name)), time) << name;
  }

  const std::string slow_;
};

TEST_F(BatchInterruptionTest, KilledAndResumed) {
  EXPECT_EQ(Interrupt(SIGKILL).status, 128 + SIGKILL);
  ExpectResumed();
}

TEST_F(BatchInterruptionTest, InterruptedAndResumed) {
  const ProcessResult result = Interrupt(SIGINT);
  EXPECT_EQ(result.status, 130);
  EXPECT_NE(result.err.find("\nlumvik: interrupted: "), std::string::npos) << result.err;
  EXPECT_NE(result.err.find(" not started or not finished; continue with --resume ("), std::string::npos)
      << result.err;
  ExpectNothingTemporary();
  ExpectResumed();
}

TEST_F(BatchInterruptionTest, TerminatedWithAReport) {
  const ProcessResult result = Interrupt(SIGTERM, {"--json", "--jobs", "1"});
  EXPECT_EQ(result.status, 143);
  ExpectNothingTemporary();
  const Json json = Json::parse(result.out);
  EXPECT_EQ(json.at("interrupted"), true);
  EXPECT_EQ(json.at("developed"), Outputs().size());
  std::size_t others = 0;
  for (const char* state : {"pending", "failed", "damaged"}) others += json.at(state).get<std::size_t>();
  EXPECT_EQ(others + Outputs().size(), kAll);
  ExpectResumed();
}

// Ctrl-C reaches every process of a terminal, but it is the batch that ends its workers.
TEST_F(BatchInterruptionTest, WorkersIgnoreSigint) {
  RunningProcess batch(BatchCommand());
  EXPECT_EQ(kill(AwaitWorker(batch.id(), slow_), SIGINT), 0);
  const ProcessResult result = batch.Wait();
  EXPECT_EQ(result.err.find("was killed by signal"), std::string::npos) << result.err;
  EXPECT_EQ(Outputs().size(), kGood);
}

}  // namespace
}  // namespace lumvik::test
