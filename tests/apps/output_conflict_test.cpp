// Outputs of one command that are the same file, and outputs of which one cannot be written.
#include <filesystem>
#include <vector>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class OutputConflictTest : public CommandTest {
 protected:
  void ExpectConflict(const std::string& output, const std::vector<std::string>& options,
                      const std::string& part) const {
    ExpectRefusal(Develop(in_, output, options), kUsage, part);
  }

  std::size_t Files() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(Path("folder")), fs::directory_iterator()));
  }

  void SetUp() override { fs::create_directory(Path("folder")); }

  const std::string in_ = Photograph("in.png");
};

TEST_F(OutputConflictTest, TheSameFileIsRefused) {
  const std::string out = Path("folder/x.png");
  fs::create_directory_symlink("folder", Path("link"));
  for (const char* name : {"folder/x.png", "folder/./x.png", "folder/../folder/x.png", "link/x.png"}) {
    ExpectConflict(out, {"--preview", Path(name)},
                   "--preview: '" + Path(name) + "' is also the file of --output");
  }
  EXPECT_EQ(Files(), 0U);
}

TEST_F(OutputConflictTest, NamesThatDifferInCaseOnlyAreRefused) {
  ExpectConflict(Path("folder/x.png"), {"--preview", Path("folder/X.PNG")},
                 "--preview: '" + Path("folder/X.PNG") + "' differs from the file of --output in case only");
  EXPECT_EQ(Files(), 0U);
}

TEST_F(OutputConflictTest, LinksToTheSameFileAreRefused) {
  fs::create_symlink("x.png", Path("folder/y.png"));
  ExpectConflict(Path("folder/x.png"), {"--preview", Path("folder/y.png")}, "is also the file of --output");
  ASSERT_EQ(Develop(in_, Path("folder/x.png")).status, kSuccess);
  fs::create_hard_link(Path("folder/x.png"), Path("folder/z.png"));
  const std::string before = ReadFile(Path("folder/x.png"));
  ExpectConflict(Path("folder/x.png"), {"--preview", Path("folder/z.png"), "--overwrite"},
                 "is also the file of --output");
  EXPECT_EQ(ReadFile(Path("folder/x.png")), before);
}

TEST_F(OutputConflictTest, SavedSettingsAreAnOutputToo) {
  fs::create_symlink("x.png", Path("folder/s.json"));
  ExpectConflict(Path("folder/x.png"), {"--save-settings", Path("folder/s.json")},
                 "--save-settings: '" + Path("folder/s.json") + "' is also the file of --output");
}

TEST_F(OutputConflictTest, NothingIsWrittenUnlessEverythingCanBe) {
  ExpectRefusal(Develop(in_, Path("folder/x.png"), {"--save-settings", Path("no folder/s.json")}), kFailure,
                "there is no folder");
  ExpectRefusal(Develop(in_, Path("no folder/x.png"), {"--save-settings", Path("folder/s.json")}), kFailure,
                "there is no folder");
  EXPECT_EQ(Files(), 0U);
}

// The limit stops the image; the settings would fit.
TEST_F(OutputConflictTest, SettingsAreNotSavedWithoutTheImage) {
  const std::vector<std::string> prefix = {"sh", "-c", "trap '' XFSZ; ulimit -f 8; exec \"$0\" \"$@\"",
                                           LUMVIK_COMMAND};
  const ProcessResult result =
      Develop(kTower, Path("folder/x.jpg"), {"--save-settings", Path("folder/s.json")}, prefix);
  EXPECT_EQ(result.status, kDiskFull) << result.err;
  EXPECT_EQ(Files(), 0U);
}

}  // namespace
}  // namespace lumvik::test
