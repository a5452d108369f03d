// Existing files: what the command did not write is replaced only with --overwrite.
#include <filesystem>
#include <fstream>
#include <vector>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

const std::string kForeign = "the camera's own file";

class OverwriteTest : public CommandTest {
 protected:
  static ProcessResult Lumvik(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), LUMVIK_COMMAND);
    return RunProcess(arguments);
  }

  // Runs a command that writes `output`.
  void ExpectProtection(const std::vector<std::string>& command, const std::string& output) const {
    SCOPED_TRACE(command.front());
    WriteFile(output, kForeign);
    const ProcessResult refused = Lumvik(command);
    EXPECT_EQ(refused.status, kFailure);
    EXPECT_EQ(refused.err, "lumvik: '" + output +
                               "' exists and was not written by lumvik, or was changed since; "
                               "--overwrite replaces it\n");
    EXPECT_EQ(ReadFile(output), kForeign);
    std::vector<std::string> allowed = command;
    allowed.emplace_back("--overwrite");
    EXPECT_EQ(Lumvik(allowed).status, kSuccess);
    EXPECT_NE(ReadFile(output), kForeign);
    EXPECT_EQ(Lumvik(command).status, kSuccess) << "its own file";
    std::ofstream(output, std::ios::binary | std::ios::app) << "edited";
    EXPECT_EQ(Lumvik(command).status, kFailure) << "its own file, edited since";
  }

  const std::string in_ = Photograph("in.png");
};

TEST_F(OverwriteTest, DevelopProtectsFilesOfOthers) {
  for (const char* name : {"out.jpg", "out.png", "out.tif"}) {
    ExpectProtection({"develop", in_, "-o", Path(name)}, Path(name));
  }
  ExpectProtection({"develop", in_, "-o", Path("bare.jpg"), "--no-exif"}, Path("bare.jpg"));
  ExpectProtection({"develop", in_, "--preview", Path("preview.png")}, Path("preview.png"));
}

TEST_F(OverwriteTest, OtherCommandsProtectFilesOfOthers) {
  const std::string out = Path("out.png");
  ExpectProtection({"histogram", in_, "-o", out}, out);
  ExpectProtection({"mask", kRawSample, "--quality", "4", "-o", out}, out);
  ExpectProtection({"cutout", kRawSample, "--quality", "4", "-o", out}, out);
}

// No decoding for nothing: the photograph is not even one.
TEST_F(OverwriteTest, IsCheckedFirst) {
  WriteFile(Path("text.jpg"), "not a photograph");
  WriteFile(Path("out.jpg"), kForeign);
  ExpectRefusal(Develop(Path("text.jpg"), Path("out.jpg")), kFailure, "--overwrite replaces it");
}

TEST_F(OverwriteTest, ThePhotographIsNeverReplaced) {
  const std::string before = ReadFile(in_);
  fs::create_symlink("in.png", Path("link.png"));
  fs::create_hard_link(in_, Path("hard.png"));
  for (const char* name : {"in.png", "link.png", "hard.png"}) {
    const std::string out = Path(name);
    ExpectRefusal(Develop(in_, out, {"--overwrite"}), kFailure, "it is the input photograph");
    ExpectRefusal(Lumvik({"develop", in_, "--preview", out, "--overwrite"}), kFailure,
                  "it is the input photograph");
    ExpectRefusal(Lumvik({"histogram", in_, "-o", out, "--overwrite"}), kFailure,
                  "it is the input photograph");
  }
  EXPECT_EQ(ReadFile(in_), before);
}

TEST_F(OverwriteTest, SettingsFilesNeedTheOptionUnlessNothingChanges) {
  const std::string saved = Path("saved.json");
  const auto save = [&](std::vector<std::string> options) {
    options.insert(options.end(), {"--save-settings", saved});
    return Develop(in_, Path("out.png"), options);
  };
  ASSERT_EQ(save({"--contrast", "20"}).status, kSuccess);
  const std::string first = ReadFile(saved);
  EXPECT_EQ(save({"--contrast", "20"}).status, kSuccess) << "the same content";
  fs::remove(Path("out.png"));
  ExpectRefusal(save({"--contrast", "30"}), kFailure,
                "'" + saved + "' exists with other content; --overwrite replaces it");
  EXPECT_EQ(ReadFile(saved), first);
  EXPECT_FALSE(fs::exists(Path("out.png")));
  EXPECT_EQ(save({"--contrast", "30", "--overwrite"}).status, kSuccess);
  EXPECT_NE(ReadFile(saved), first);
}

// They are known only after the photograph was analyzed.
TEST_F(OverwriteTest, SuggestedSettingsDoNotReplaceAFileEither) {
  WriteFile(Path("saved.json"), "{}");
  ExpectRefusal(Develop(in_, Path("out.png"), {"--auto", "--save-settings", Path("saved.json")}), kFailure,
                "--overwrite replaces it");
  EXPECT_FALSE(fs::exists(Path("out.png")));
  EXPECT_EQ(ReadFile(Path("saved.json")), "{}");
}

}  // namespace
}  // namespace lumvik::test
