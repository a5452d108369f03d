// `lumvik settings export`: settings as XMP.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class SettingsExportTest : public CommandTest {
 protected:
  static ProcessResult Settings(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {LUMVIK_COMMAND, "settings"});
    return RunProcess(arguments);
  }

  std::string SettingsFile() const {
    WriteFile(Path("a.json"), R"({"lumvik": 2, "exposure": 0.5, "dehaze": 12, "hsl": {"red": {"hue": 3}}})");
    return Path("a.json");
  }
};

TEST_F(SettingsExportTest, IsWrittenToStandardOutput) {
  const ProcessResult result = Settings({"export", SettingsFile()});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out.rfind("<?xpacket begin", 0), 0U) << result.out;
  EXPECT_NE(result.out.find("Exposure2012"), std::string::npos) << result.out;
}

TEST_F(SettingsExportTest, ReadsBackWithTheSameValues) {
  const ProcessResult result = Settings({"export", SettingsFile(), "-o", Path("a.xmp")});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, "");
  const ProcessResult imported = Settings({"import", Path("a.xmp"), "-o", Path("b.json"), "--quiet"});
  EXPECT_EQ(imported.status, kSuccess) << imported.err;
  EXPECT_EQ(Json::parse(ReadFile(Path("b.json"))), Json::parse(ReadFile(Path("a.json"))));
}

TEST_F(SettingsExportTest, ReadsTheSidecarOfAPhotograph) {
  const std::string in = Photograph("in.png");
  ExpectRefusal(Settings({"export", in}), kFailure, "'" + in + "' has no settings file next to it");
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "exposure": 0.5})");
  const ProcessResult result = Settings({"export", in});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_NE(result.out.find("Exposure2012"), std::string::npos) << result.out;
}

TEST_F(SettingsExportTest, ExistingFilesAreProtected) {
  const std::string settings = SettingsFile();
  WriteFile(Path("a.xmp"), "another program's");
  ExpectRefusal(Settings({"export", settings, "-o", Path("a.xmp")}), kFailure,
                "'" + Path("a.xmp") + "' exists with other content; --overwrite replaces it");
  EXPECT_EQ(ReadFile(Path("a.xmp")), "another program's");
  EXPECT_EQ(Settings({"export", settings, "-o", Path("a.xmp"), "--overwrite"}).status, kSuccess);
  EXPECT_EQ(Settings({"export", settings, "-o", Path("a.xmp")}).status, kSuccess) << "the same content";
  WriteFile(Path("b.json"), "{}");
  ExpectRefusal(Settings({"import", Path("a.xmp"), "-o", Path("b.json")}), kFailure,
                "--overwrite replaces it");
  EXPECT_EQ(ReadFile(Path("b.json")), "{}");
}

TEST_F(SettingsExportTest, UsageIsChecked) {
  ExpectRefusal(Settings({"export"}), kUsage, "is required");
  ExpectRefusal(Settings({"export", SettingsFile(), "-o", Path("a.txt")}), kUsage, "does not end in .xmp");
  ExpectRefusal(Settings({"export", Path("missing.json")}), kFailure, "there is no such file");
}

}  // namespace
}  // namespace lumvik::test
