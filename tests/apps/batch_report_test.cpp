// `lumvik batch` on damaged photographs, and what it prints.
#include <filesystem>
#include <fstream>

#include "batch_fixture.h"
#include "terminal/exit_status.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class BatchReportTest : public BatchTest {
 protected:
  BatchReportTest() {
    Photograph("photos/a.jpg");
    Photograph("photos/cut.jpg");
    fs::resize_file(In("cut.jpg"), fs::file_size(In("cut.jpg")) * 2 / 3);
  }
};

TEST_F(BatchReportTest, DamagedPhotographsAreCountedApart) {
  const ProcessResult result = Batch({"--json"});
  EXPECT_EQ(result.status, kDamaged);
  EXPECT_EQ(Outputs(), std::set<std::string>({"a.jpg"}));
  EXPECT_NE(result.err.find("\nlumvik: '" + In("cut.jpg") + "' is damaged: "), std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("\nlumvik: 1 developed, 1 damaged and not developed ("), std::string::npos)
      << result.err;
  const Json json = Json::parse(result.out);
  EXPECT_EQ(json.at("damaged"), 1);
  EXPECT_EQ(json.at("failed"), 0);
  const Json photograph = json.at("photographs").at(1);
  EXPECT_EQ(photograph.at("status"), "damaged");
  EXPECT_NE(photograph.at("error").get<std::string>().find("is damaged: "), std::string::npos);
  WriteFile(In("b.jpg"), "no photograph");
  EXPECT_EQ(Batch().status, kFailure) << "a failure outranks damage";
}

TEST_F(BatchReportTest, AcceptedDamageIsCountedToo) {
  const ProcessResult result = Batch({"--json", "--accept-damaged"});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(Outputs(), std::set<std::string>({"a.jpg", "cut.jpg"}));
  EXPECT_NE(result.err.find("\nlumvik: warning: '" + In("cut.jpg") + "' is damaged: "), std::string::npos)
      << result.err;
  EXPECT_NE(result.err.find("\nlumvik: 2 developed (1 damaged) ("), std::string::npos) << result.err;
  const Json json = Json::parse(result.out);
  EXPECT_EQ(json.at("developed"), 2);
  EXPECT_EQ(json.at("developed_damaged"), 1);
  EXPECT_NE(json.at("photographs").at(1).at("damage"), "");
  EXPECT_FALSE(json.at("photographs").at(0).contains("damage"));
}

TEST_F(BatchReportTest, WarningsNameThePhotograph) {
  fs::remove(In("cut.jpg"));
  // A segment that claims to be EXIF and is none.
  std::string bytes = ReadFile(In("a.jpg"));
  bytes.insert(2, std::string("\xFF\xE1\x00\x10"
                              "Exif\0\0garbage!",
                              18));
  WriteFile(In("a.jpg"), bytes);
  const ProcessResult result = Batch({"--json"});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  const Json warnings = Json::parse(result.out).at("photographs").at(0).at("warnings");
  ASSERT_EQ(warnings.size(), 1U);
  const std::string warning = warnings.at(0);
  EXPECT_NE(result.err.find("\nlumvik: warning: '" + In("a.jpg") + "': " + warning + "\n"), std::string::npos)
      << result.err;
}

TEST_F(BatchReportTest, QuietPrintsErrorsAlone) {
  WriteFile(In("b.jpg"), "no photograph");
  const ProcessResult result = Batch({"--quiet", "--accept-damaged"});
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err,
            "lumvik: '" + In("b.jpg") + "' is neither a RAW file nor an image of a known format\n");
  EXPECT_EQ(Outputs().size(), 2U);
}

TEST_F(BatchReportTest, VerboseNamesEveryPhotograph) {
  const std::vector<std::string> options = {"--verbose", "--resume", "--accept-damaged"};
  const ProcessResult first = Batch(options);
  EXPECT_NE(first.err.find("\nlumvik: developed '" + In("a.jpg") + "' in 0."), std::string::npos)
      << first.err;
  const ProcessResult second = Batch(options);
  EXPECT_NE(second.err.find("lumvik: skipped '" + In("a.jpg") + "': already developed\n"), std::string::npos)
      << second.err;
}

TEST_F(BatchReportTest, NamesArePrintedSafely) {
  fs::rename(In("cut.jpg"), In("x\n\x1B[2J.jpg"));
  const ProcessResult result = Batch({"--accept-damaged"});
  EXPECT_NE(result.out.find("x\\n\\x1B[2J.jpg"), std::string::npos) << result.out;
  EXPECT_EQ((result.out + result.err).find('\x1B'), std::string::npos);
}

}  // namespace
}  // namespace lumvik::test
