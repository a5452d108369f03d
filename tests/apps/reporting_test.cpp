// What commands print: --quiet, --verbose, --dry-run and --json.
#include <filesystem>
#include <nlohmann/json.hpp>
#include <vector>

#include "command_test.h"
#include "xmp_file.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class ReportingTest : public CommandTest {
 protected:
  static ProcessResult Lumvik(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), LUMVIK_COMMAND);
    return RunProcess(arguments);
  }

  std::string CutJpeg() const {
    WriteFile(Path("cut.jpg"), ReadFile(kTower).substr(0, 600000));
    return Path("cut.jpg");
  }

  const std::string in_ = Photograph("in.png");
};

TEST_F(ReportingTest, QuietPrintsNothing) {
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "contrast": 20})");
  for (const ProcessResult& result :
       {Develop(in_, Path("out.jpg"), {"--quiet", "--preview", Path("preview.png")}),
        Develop(CutJpeg(), Path("cut-out.jpg"), {"--quiet", "--accept-damaged"}),
        Lumvik({"mask", kRawSample, "--quality", "4", "-o", Path("mask.png"), "--quiet"}),
        Lumvik({"cutout", kRawSample, "--quality", "4", "-o", Path("cutout.png"), "--quiet"})}) {
    EXPECT_EQ(result.status, kSuccess);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "");
  }
  EXPECT_TRUE(fs::exists(Path("out.jpg")));
}

TEST_F(ReportingTest, QuietStillPrintsErrorsAndWhatWasAskedFor) {
  ExpectRefusal(Develop(Path("missing.jpg"), Path("out.jpg"), {"--quiet"}), kFailure,
                "there is no such file");
  EXPECT_NE(Lumvik({"histogram", in_, "--quiet"}).out, "");
  EXPECT_NE(Lumvik({"suggest", in_, "--quiet"}).out, "");
  WriteFile(Path("in.xmp"), Xmp("crs:Contrast2012=\"+20\""));
  const ProcessResult imported = Lumvik({"settings", "import", Path("in.xmp"), "--quiet"});
  EXPECT_NE(imported.out, "");
  EXPECT_EQ(imported.err, "");
}

TEST_F(ReportingTest, VerboseNamesSourcesAndTimes) {
  WriteFile(Path("in.png.lumvik.json"), R"({"lumvik": 2, "contrast": 20})");
  WriteFile(Path("other.json"), R"({"lumvik": 2, "tint": 3})");
  const ProcessResult result = Develop(in_, Path("out.jpg"), {"--verbose", "--settings", Path("other.json")});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, Path("out.jpg") + " 60x40\nsettings from " + Path("in.png.lumvik.json") + "\n");
  for (const std::string& part :
       {"lumvik: settings from '" + Path("in.png.lumvik.json") + "'\n",
        "lumvik: settings from '" + Path("other.json") + "'\n", std::string("lumvik: no color profile\n"),
        std::string("lumvik: checked in "), std::string("lumvik: decoded in "),
        std::string("lumvik: developed in "), std::string("lumvik: saved in ")}) {
    EXPECT_NE(result.err.find(part), std::string::npos) << part << " is missing in:\n" << result.err;
  }
}

TEST_F(ReportingTest, QuietAndVerboseExcludeEachOther) {
  ExpectRefusal(Develop(in_, Path("out.jpg"), {"--quiet", "--verbose"}), kUsage,
                "--verbose excludes --quiet");
}

TEST_F(ReportingTest, DryRunWritesNothing) {
  const ProcessResult result =
      Develop(in_, Path("out.jpg"),
              {"--dry-run", "--preview", Path("preview.png"), "--save-settings", Path("saved.json")});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, "would write " + Path("out.jpg") + "\nwould write " + Path("preview.png") +
                            "\nwould write " + Path("saved.json") + "\n");
  EXPECT_EQ(result.err, "");
  for (const char* command : {"mask", "cutout", "histogram"}) {
    const ProcessResult other = Lumvik({command, kRawSample, "-o", Path("out.png"), "--dry-run"});
    EXPECT_EQ(other.status, kSuccess) << other.err;
    EXPECT_EQ(other.out, "would write " + Path("out.png") + "\n");
  }
  WriteFile(Path("in.xmp"), Xmp("crs:Contrast2012=\"+20\""));
  EXPECT_EQ(Lumvik({"settings", "import", Path("in.xmp"), "-o", Path("a.json"), "--dry-run"}).out,
            "would write " + Path("a.json") + "\n");
  EXPECT_EQ(Lumvik({"settings", "export", Path("in.png"), "-o", Path("a.xmp"), "--dry-run"}).status,
            kFailure);
  for (const char* name : {"out.jpg", "preview.png", "saved.json", "out.png", "a.json", "a.xmp"}) {
    EXPECT_FALSE(fs::exists(Path(name))) << name;
  }
}

TEST_F(ReportingTest, DryRunFailsAsTheRealRunWould) {
  WriteFile(Path("text.jpg"), "not a photograph");
  WriteFile(Path("bad.json"), "{}");
  WriteFile(Path("foreign.jpg"), "the camera's own");
  const std::string out = Path("out.jpg");
  ExpectRefusal(Develop(Path("missing.jpg"), out, {"--dry-run"}), kFailure, "there is no such file");
  ExpectRefusal(Develop(Path("text.jpg"), out, {"--dry-run"}), kFailure, "is neither a RAW file nor");
  ExpectRefusal(Develop(in_, out, {"--dry-run", "--settings", Path("bad.json")}), kFailure, "cannot use");
  ExpectRefusal(Develop(in_, Path("foreign.jpg"), {"--dry-run"}), kFailure, "--overwrite replaces it");
  ExpectRefusal(Develop(in_, Path("no folder/out.jpg"), {"--dry-run"}), kFailure, "there is no folder");
  ExpectRefusal(Lumvik({"mask", in_, "-o", Path("out.png"), "--dry-run"}), kFailure, "is not a RAW file");
}

TEST_F(ReportingTest, JsonDescribesTheOutputs) {
  WriteFile(Path("in.lumvik.json"), R"({"lumvik": 2, "contrast": 20})");
  WriteFile(Path("other.json"), R"({"lumvik": 2, "tint": 3})");
  const ProcessResult result =
      Develop(in_, Path("out.jpg"),
              {"--json", "--settings", Path("other.json"), "--preview", Path("preview.png"), "--size", "30",
               "--save-settings", Path("saved.json")});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.err, "");
  const Json expected = {{"outputs",
                          {{{"path", Path("out.jpg")}, {"width", 30}, {"height", 20}},
                           {{"path", Path("preview.png")}, {"width", 60}, {"height", 40}},
                           {{"path", Path("saved.json")}}}},
                         {"settings_from", {Path("in.lumvik.json"), Path("other.json")}},
                         {"damage", nullptr},
                         {"warnings", Json::array()}};
  EXPECT_EQ(Json::parse(result.out), expected);
}

TEST_F(ReportingTest, EveryCommandPrintsJson) {
  const auto json = [](const std::vector<std::string>& arguments) {
    const ProcessResult result = Lumvik(arguments);
    EXPECT_EQ(result.status, kSuccess) << result.err;
    return Json::parse(result.out);
  };
  for (const char* command : {"mask", "cutout"}) {
    const Json printed = json({command, kRawSample, "--quality", "4", "-o", Path("out.png"), "--json"});
    const Json output = {{"path", Path("out.png")}, {"width", 400}, {"height", 266}};
    EXPECT_EQ(printed.at("outputs"), Json::array({output}));
    EXPECT_TRUE(printed.at("damage").is_null());
    fs::remove(Path("out.png"));
  }
  const Json histogram = json({"histogram", in_, "--json", "-o", Path("out.png")});
  EXPECT_EQ(histogram.at("outputs").at(0).at("path"), Path("out.png"));
  EXPECT_EQ(histogram.at("red").size(), 256U);
  EXPECT_EQ(histogram.at("width"), 60);
  const Json suggested = json({"suggest", in_, "--json"});
  EXPECT_TRUE(suggested.at("exposure").contains("exposure"));
  EXPECT_TRUE(suggested.at("warnings").is_array());
  WriteFile(Path("in.xmp"), Xmp("crs:Contrast2012=\"+20\""));
  const Json imported = json({"settings", "import", Path("in.xmp"), "-o", Path("a.json"), "--json"});
  EXPECT_EQ(imported.at("outputs").at(0).at("path"), Path("a.json"));
  EXPECT_EQ(imported.at("settings").at("contrast"), 20);
}

TEST_F(ReportingTest, DryRunWithJson) {
  const Json json = Json::parse(Develop(in_, Path("out.jpg"), {"--dry-run", "--json"}).out);
  EXPECT_EQ(json.at("dry_run"), true);
  EXPECT_EQ(json.at("outputs"), Json::array({{{"path", Path("out.jpg")}}}));
}

}  // namespace
}  // namespace lumvik::test
