// `lumvik help`, and the command without arguments.
#include "command_test.h"

namespace lumvik::test {
namespace {

ProcessResult RunHelp(const std::vector<std::string>& arguments) {
  std::vector<std::string> all = Command();
  all.insert(all.end(), arguments.begin(), arguments.end());
  return RunProcess(all);
}

TEST(HelpTest, EachPageIsThatOfTheOption) {
  const std::vector<std::vector<std::string>> pages = {{}, {"develop"}, {"settings"}, {"settings", "import"}};
  for (std::vector<std::string> page : pages) {
    std::vector<std::string> help = page;
    help.insert(help.begin(), "help");
    page.emplace_back("--help");
    const ProcessResult expected = RunHelp(page);
    const ProcessResult result = RunHelp(help);
    EXPECT_EQ(result.status, kSuccess);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out, expected.out);
    EXPECT_NE(result.out.find("Usage: lumvik"), std::string::npos);
  }
}

TEST(HelpTest, TheCommandWithoutArgumentsPrintsTheHelp) {
  const ProcessResult result = RunHelp({});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, RunHelp({"--help"}).out);
  EXPECT_EQ(result.err, "");
}

TEST(HelpTest, UnknownCommandsAreRefused) {
  ExpectRefusal(RunHelp({"help", "print"}), kUsage, "'print' is not a command; see lumvik --help");
  ExpectRefusal(RunHelp({"help", "settings", "print"}), kUsage,
                "'print' is not a command; see lumvik settings --help");
}

}  // namespace
}  // namespace lumvik::test
