// Photographs that are damaged: status 3 and nothing written, or developed as far as possible on request.
#include <filesystem>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "batch/worker_report.h"
#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class DamagedPhotographTest : public CommandTest {
 protected:
  // The beginning of a photograph, and its path.
  std::string Cut(const std::string& photograph, double part, const std::string& name) const {
    const std::string whole = ReadFile(photograph);
    WriteFile(Path(name),
              whole.substr(0, static_cast<std::size_t>(part * static_cast<double>(whole.size()))));
    return Path(name);
  }

  static ProcessResult Lumvik(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), LUMVIK_COMMAND);
    return RunProcess(arguments);
  }

  void ExpectDamageReported(const std::string& input) const {
    SCOPED_TRACE(input);
    const ProcessResult result = Develop(input, Path("out.jpg"));
    ExpectRefusal(result, kDamaged, "'" + input + "' is damaged: ");
    EXPECT_NE(result.err.find("; nothing was written (--accept-damaged develops what can be decoded)"),
              std::string::npos)
        << result.err;
    EXPECT_FALSE(fs::exists(Path("out.jpg")));
  }
};

// A card that was removed too early: the lower part of the image is of one color.
TEST_F(DamagedPhotographTest, ACutRawFile) {
  for (const double part : {0.3, 0.6, 0.9}) ExpectDamageReported(Cut(kRawSample, part, "cut.ARW"));
}

TEST_F(DamagedPhotographTest, ACutJpeg) {
  for (const double part : {0.0001, 0.01, 0.5, 0.9, 0.9999}) {
    ExpectDamageReported(Cut(kTower, part, "cut.jpg"));
  }
}

TEST_F(DamagedPhotographTest, ACutPng) {
  const std::string whole = Photograph("whole.png");
  for (const double part : {0.1, 0.5, 0.99}) ExpectDamageReported(Cut(whole, part, "cut.png"));
}

TEST_F(DamagedPhotographTest, ACutTiff) {
  const std::string whole = Photograph("whole.tif");
  for (const double part : {0.1, 0.5, 0.99}) ExpectDamageReported(Cut(whole, part, "cut.tif"));
}

// Nothing of it can be decoded.
TEST_F(DamagedPhotographTest, AFileThatCannotBeOpened) {
  const std::string in = Cut(Photograph("whole.png"), 0.1, "cut.png");
  const ProcessResult result = Develop(in, Path("out.jpg"), {"--accept-damaged"});
  EXPECT_EQ(result.status, kDamaged);
  EXPECT_NE(result.err.find("cannot open '" + in + "'"), std::string::npos) << result.err;
  EXPECT_FALSE(fs::exists(Path("out.jpg")));
}

TEST_F(DamagedPhotographTest, IsDevelopedOnRequest) {
  const std::string in = Cut(kTower, 0.5, "cut.jpg");
  const ProcessResult result = Develop(in, Path("out.jpg"), {"--accept-damaged"});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, Path("out.jpg") + " 2272x1704\n");
  EXPECT_EQ(result.err,
            "lumvik: warning: '" + in + "' is damaged: the JPEG ends in the middle of the image\n");
  EXPECT_EQ(cv::imread(Path("out.jpg")).size(), cv::Size(2272, 1704));
}

TEST_F(DamagedPhotographTest, AcceptingDamageDoesNotAffectWholePhotographs) {
  const ProcessResult result = Develop(Photograph("in.png"), Path("out.jpg"), {"--accept-damaged"});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.err, "");
}

TEST_F(DamagedPhotographTest, EveryCommandThatReadsPixelsRefusesIt) {
  const std::string in = Cut(kRawSample, 0.6, "cut.ARW");
  const std::string out = Path("out.png");
  const std::vector<std::vector<std::string>> commands = {
      {"develop", in, "--preview", out}, {"mask", in, "-o", out}, {"cutout", in, "-o", out},
      {"histogram", in, "-o", out},      {"suggest", in},         {"suggest", in, "--json"}};
  for (std::vector<std::string> command : commands) {
    SCOPED_TRACE(command.front());
    command.insert(command.end(), {"--quality", "4"});
    ExpectRefusal(Lumvik(command), kDamaged, "'" + in + "' is damaged: ");
    EXPECT_FALSE(fs::exists(out));
    command.emplace_back("--accept-damaged");
    const ProcessResult accepted = Lumvik(command);
    EXPECT_EQ(accepted.status, kSuccess) << accepted.err;
    EXPECT_NE(accepted.out, "");
    EXPECT_NE(accepted.err.find("lumvik: warning: '" + in + "' is damaged: "), std::string::npos)
        << accepted.err;
    fs::remove(out);
  }
}

// For `lumvik batch`.
TEST_F(DamagedPhotographTest, AWorkerReportsTheDamage) {
  const std::string in = Cut(kTower, 0.5, "cut.jpg");
  const ProcessResult result = Develop(in, Path("out.jpg"), {"--accept-damaged", kWorkerReportOption});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.err, "") << "the batch reports it";
  const auto report = FindWorkerReport(result.out);
  ASSERT_TRUE(report) << result.out;
  EXPECT_EQ(report->damage, "the JPEG ends in the middle of the image");
  EXPECT_EQ(report->width, 2272);
}

TEST_F(DamagedPhotographTest, TheDamageIsInTheJson) {
  const std::string in = Cut(kTower, 0.5, "cut.jpg");
  const ProcessResult result = Develop(in, Path("out.jpg"), {"--accept-damaged", "--json"});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  const Json json = Json::parse(result.out);
  EXPECT_EQ(json.at("damage"), "the JPEG ends in the middle of the image");
  EXPECT_EQ(json.at("warnings"), Json::array());
  const Json whole = Json::parse(Develop(Photograph("in.png"), Path("whole.jpg"), {"--json"}).out);
  EXPECT_TRUE(whole.at("damage").is_null());
}

}  // namespace
}  // namespace lumvik::test
