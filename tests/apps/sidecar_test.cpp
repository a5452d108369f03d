// Settings sidecars: which one is read, and what overrides it.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class SidecarTest : public CommandTest {
 protected:
  // Develops in.png and returns the setting that was used.
  double Used(const std::string& key, std::vector<std::string> options = {}) {
    options.insert(options.end(), {"--save-settings", Path("saved.json"), "--overwrite"});
    result_ = Develop(in_, Path("out.png"), options);
    EXPECT_EQ(result_.status, kSuccess) << result_.err;
    return Json::parse(ReadFile(Path("saved.json"))).at(key);
  }

  std::string SettingsLine(const std::string& name) const { return "settings from " + Path(name) + "\n"; }
  std::string PictureLine() const { return Path("out.png") + " 60x40\n"; }

  const std::string in_ = Photograph("in.png");
  ProcessResult result_;
};

TEST_F(SidecarTest, IsReadAndReported) {
  EXPECT_EQ(Used("contrast"), 0);
  EXPECT_EQ(result_.out, PictureLine());
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "contrast": 20})");
  EXPECT_EQ(Used("contrast"), 20);
  EXPECT_EQ(result_.out, PictureLine() + SettingsLine("in.lumvik.json"));
}

TEST_F(SidecarTest, EqualsTheOption) {
  ASSERT_EQ(Develop(in_, Path("option.png"), {"--contrast", "20"}).status, kSuccess);
  ASSERT_EQ(Develop(in_, Path("none.png")).status, kSuccess);
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "contrast": 20})");
  ASSERT_EQ(Develop(in_, Path("sidecar.png")).status, kSuccess);
  EXPECT_EQ(ReadFile(Path("sidecar.png")), ReadFile(Path("option.png")));
  EXPECT_NE(ReadFile(Path("sidecar.png")), ReadFile(Path("none.png")));
}

TEST_F(SidecarTest, OnlyTheMostSpecificIsRead) {
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "contrast": 20, "tint": 30})");
  WriteFile(Path("in.png.lumvik.json"), R"({"lumvik": 2, "contrast": 40})");
  EXPECT_EQ(Used("contrast"), 40);
  EXPECT_EQ(Used("tint"), 0);
  EXPECT_EQ(result_.out, PictureLine() + SettingsLine("in.png.lumvik.json"));
}

TEST_F(SidecarTest, IsOverriddenBySettingsAndOptions) {
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "contrast": 20, "tint": 21, "shadows": 22})");
  WriteFile(Path("other.json"), R"({"lumvik": 2, "tint": 31, "shadows": 32})");
  const std::vector<std::string> options = {"--settings", Path("other.json"), "--shadows", "42"};
  EXPECT_EQ(Used("contrast", options), 20);
  EXPECT_EQ(Used("tint", options), 31);
  EXPECT_EQ(Used("shadows", options), 42);
}

TEST_F(SidecarTest, OverridesSuggestions) {
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "vibrance": 3})");
  EXPECT_EQ(Used("vibrance", {"--auto"}), 3);
  EXPECT_EQ(Used("saturation", {"--auto"}), 5);
}

TEST_F(SidecarTest, NoSidecarIgnoresIt) {
  WriteFile(Path("in.lumvik.json"), "not even JSON");
  EXPECT_EQ(Used("contrast", {"--no-sidecar"}), 0);
  EXPECT_EQ(result_.out, PictureLine());
}

TEST_F(SidecarTest, DoesNotDependOnTheWorkingFolder) {
  fs::create_directory(Path("folder"));
  fs::copy_file(in_, Path("folder/other.png"));
  WriteFile(Path("folder/in.lumvik.json"), R"({"lumvik": 2, "contrast": 20})");
  WriteFile(Path("other.lumvik.json"), R"({"lumvik": 2, "contrast": 20})");
  EXPECT_EQ(Used("contrast"), 0);
  EXPECT_EQ(Develop(Path("folder/other.png"), Path("out.png")).out, PictureLine());
  const ProcessResult here = RunProcess(
      {"sh", "-c", "cd \"$0\" && exec \"$1\" develop in.png -o out.png", Path(""), LUMVIK_COMMAND});
  EXPECT_EQ(here.out, "out.png 60x40\n");
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2})");
  const ProcessResult beside = RunProcess(
      {"sh", "-c", "cd \"$0\" && exec \"$1\" develop in.png -o out.png", Path(""), LUMVIK_COMMAND});
  EXPECT_EQ(beside.out, "out.png 60x40\nsettings from in.lumvik.json\n");
}

TEST_F(SidecarTest, ErrorsInItAreReported) {
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "contrast": 200})");
  ExpectRefusal(Develop(in_, Path("out.png")), kFailure,
                "cannot use the settings '" + Path("in.lumvik.json") + "': line 1: contrast: 200 is not");
  EXPECT_FALSE(fs::exists(Path("out.png")));
}

TEST_F(SidecarTest, ADanglingLinkIsReported) {
  fs::create_symlink("nowhere", Path("in.lumvik.json"));
  ExpectRefusal(Develop(in_, Path("out.png")), kFailure, "cannot read '" + Path("in.lumvik.json") + "'");
}

TEST_F(SidecarTest, CanBeTheFileOfSaveSettings) {
  const std::string sidecar = Path("in.png.lumvik.json");
  ASSERT_EQ(Develop(in_, Path("a.png"), {"--contrast", "20", "--save-settings", sidecar}).status, kSuccess);
  ASSERT_EQ(Develop(in_, Path("b.png"), {"--save-settings", sidecar}).status, kSuccess);
  EXPECT_EQ(PixelsOf(Path("a.png")), PixelsOf(Path("b.png")));
  EXPECT_EQ(Json::parse(ReadFile(sidecar)).at("contrast"), 20);
}

TEST_F(SidecarTest, AppliesToHistogram) {
  const auto histogram = [&] { return RunProcess({LUMVIK_COMMAND, "histogram", in_}).out; };
  const Json before = Json::parse(histogram());
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "exposure": -2})");
  const Json after = Json::parse(histogram());  // nothing but JSON
  EXPECT_NE(after.at("luminance"), before.at("luminance"));
}

}  // namespace
}  // namespace lumvik::test
