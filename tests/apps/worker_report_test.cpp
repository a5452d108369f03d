// The line that a worker of a batch reports.
#include "batch/worker_report.h"

#include <gtest/gtest.h>

namespace lumvik::test {
namespace {

TEST(WorkerReportTest, IsOneLineOfJson) {
  EXPECT_EQ(LineOf({2000, 1333}), R"({"width":2000,"height":1333})");
}

TEST(WorkerReportTest, IsFoundAmongOtherLines) {
  for (const char* output : {"{\"width\":20,\"height\":13}\n", "{\"width\":20,\"height\":13}",
                             "a warning\n{\"width\":20,\"height\":13}\nanother {\n"}) {
    const auto report = FindWorkerReport(output);
    ASSERT_TRUE(report) << output;
    EXPECT_EQ(report->width, 20);
    EXPECT_EQ(report->height, 13);
  }
}

TEST(WorkerReportTest, DamageAndWarningsAreOptional) {
  const std::string line = LineOf({20, 13, "its data ends early", {"EXIF: \"bad\"\nIFD", "ICC \xE9"}});
  EXPECT_EQ(line, R"({"width":20,"height":13,"damage":"its data ends early",)"
                  R"("warnings":["EXIF: \"bad\"\nIFD","ICC )"
                  "\xEF\xBF\xBD"
                  R"("]})");
  const auto report = FindWorkerReport(line);
  ASSERT_TRUE(report);
  EXPECT_EQ(report->damage, "its data ends early");
  EXPECT_EQ(report->warnings, std::vector<std::string>({"EXIF: \"bad\"\nIFD", "ICC \xEF\xBF\xBD"}));
  EXPECT_EQ(FindWorkerReport(LineOf({20, 13}))->damage, "");
}

TEST(WorkerReportTest, IsMissingInAnythingElse) {
  for (const char* output :
       {"", "\n", "20x13\n", "{}", "[20,13]", "{\"width\":20}", "{\"width\":20,\"height\":\"13\"}",
        "{\"width\":2.5,\"height\":13}", "{\"width\":2,\"height\":13,\"damage\":1}",
        "{\"width\":2,\"height\":13,\"warnings\":[1]}", "{\"width\":20,\"height\":13"}) {
    EXPECT_FALSE(FindWorkerReport(output)) << output;
  }
}

}  // namespace
}  // namespace lumvik::test
