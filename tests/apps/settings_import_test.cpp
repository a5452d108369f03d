// Import of Camera Raw settings from XMP.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "command_test.h"
#include "exif_file.h"
#include "xmp_file.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class SettingsImportTest : public CommandTest {
 protected:
  static ProcessResult Import(const std::string& input, const std::vector<std::string>& options = {}) {
    std::vector<std::string> arguments = {LUMVIK_COMMAND, "settings", "import", input};
    arguments.insert(arguments.end(), options.begin(), options.end());
    return RunProcess(arguments);
  }

  // Imports a file and returns its settings. Sets outcomes_, by Camera Raw name, and file_.
  Json Imported(const std::string& input) {
    const ProcessResult result = Import(input, {"--json"});
    EXPECT_EQ(result.status, kSuccess) << result.err;
    EXPECT_EQ(result.err, "");
    const Json report = Json::parse(result.out);
    for (const Json& property : report.at("properties")) outcomes_[property.at("name")] = property;
    file_ = report.at("file");
    return report.at("settings");
  }

  Json ImportedXmp(const std::string& attributes, const std::string& elements = "") {
    WriteFile(Path("in.xmp"), Xmp(attributes, elements));
    return Imported(Path("in.xmp"));
  }

  std::string Outcome(const std::string& name) {
    return outcomes_.contains(name) ? outcomes_[name]["outcome"] : Json("(none)");
  }
  std::string Note(const std::string& name) { return outcomes_[name]["note"]; }

  Json outcomes_;
  std::string file_;
};

struct NumberCase {
  const char* name;
  const char* value;
  const char* place;  // in the settings
  float expected;
  const char* outcome = "taken";
};

void PrintTo(const NumberCase& number, std::ostream* out) {
  *out << number.name << ' ' << number.value;
}

constexpr NumberCase kNumbers[] = {
    {"Exposure2012", "+0.50", "/exposure", 0.5F},
    {"Exposure2012", "-1.35", "/exposure", -1.35F},
    {"Contrast2012", "-15", "/contrast", -15},
    {"Highlights2012", "-60", "/highlights", -60},
    {"Shadows2012", "+42", "/shadows", 42},
    {"Whites2012", "+20", "/whites", -20, "scaled"},
    {"Blacks2012", "-7", "/blacks", 7, "scaled"},
    {"Blacks2012", "0", "/blacks", 0},
    {"IncrementalTemperature", "+50", "/temperature", 9629.63F, "scaled"},
    {"IncrementalTint", "+12", "/tint", 12},
    {"Saturation", "-5", "/saturation", -5},
    {"Vibrance", "+18", "/vibrance", 18},
    {"Clarity2012", "+9", "/clarity", 9},
    {"Texture", "-8", "/texture", -8},
    {"Dehaze", "+10", "/dehaze", 10},
    {"Dehaze", "+110", "/dehaze", 100, "scaled"},
    {"Sharpness", "40", "/sharpening_amount", 40},
    {"SharpenRadius", "+1.3", "/sharpening_radius", 1.3F},
    {"LuminanceSmoothing", "15", "/nr_luminance", 15},
    {"ColorNoiseReduction", "25", "/nr_color", 25},
    {"LensManualDistortionAmount", "+11", "/distortion", 11},
    {"VignetteAmount", "+30", "/lens_vignette", 30},
    {"DefringePurpleAmount", "4", "/defringe", 20, "scaled"},
    {"DefringeGreenAmount", "20", "/defringe", 100, "scaled"},
    {"PerspectiveVertical", "-20", "/perspective_h", -20},
    {"PostCropVignetteAmount", "+33", "/vignette_amount", 33},
    {"PostCropVignetteMidpoint", "45", "/vignette_midpoint", 45},
    {"PostCropVignetteRoundness", "-6", "/vignette_roundness", -6},
    {"GrainAmount", "22", "/grain_amount", 22},
    {"GrainSize", "35", "/grain_size", 35},
    {"SplitToningHighlightHue", "45", "/split_toning/highlight_hue", 45},
    {"SplitToningHighlightSaturation", "12", "/split_toning/highlight_saturation", 12},
    {"SplitToningShadowHue", "220", "/split_toning/shadow_hue", 220},
    {"SplitToningShadowSaturation", "13", "/split_toning/shadow_saturation", 13},
    {"SplitToningBalance", "-14", "/split_toning/balance", -14},
    {"HueAdjustmentRed", "+50", "/hsl/red/hue", 15, "scaled"},
    {"HueAdjustmentMagenta", "-100", "/hsl/magenta/hue", -30, "scaled"},
    {"SaturationAdjustmentOrange", "+17", "/hsl/orange/saturation", 17},
    {"SaturationAdjustmentYellow", "-18", "/hsl/yellow/saturation", -18},
    {"SaturationAdjustmentGreen", "+19", "/hsl/green/saturation", 19},
    {"LuminanceAdjustmentAqua", "+21", "/hsl/aqua/luminance", 21},
    {"LuminanceAdjustmentBlue", "-22", "/hsl/blue/luminance", -22},
    {"LuminanceAdjustmentPurple", "+23", "/hsl/purple/luminance", 23},
};

class ImportedNumberTest : public SettingsImportTest, public ::testing::WithParamInterface<NumberCase> {};
INSTANTIATE_TEST_SUITE_P(All, ImportedNumberTest, ::testing::ValuesIn(kNumbers));

// As an attribute and as an element, without side effects.
TEST_P(ImportedNumberTest, IsConverted) {
  const std::string name = GetParam().name;
  const std::string value = GetParam().value;
  const Json by_attribute = ImportedXmp("crs:" + name + "=\"" + value + "\"");
  EXPECT_EQ(Outcome(name), GetParam().outcome);
  EXPECT_EQ(by_attribute, ImportedXmp("", "<crs:" + name + ">" + value + "</crs:" + name + ">"));
  const Json flat = by_attribute.flatten();
  ASSERT_EQ(flat.size(), 2U) << flat;
  ASSERT_TRUE(flat.contains(GetParam().place)) << flat;
  EXPECT_EQ(flat.at(GetParam().place).get<float>(), GetParam().expected);
}

TEST_F(SettingsImportTest, ChangesAreExplained) {
  ImportedXmp(R"(crs:Whites2012="+20" crs:Dehaze="+110" crs:DefringeGreenAmount="20" crs:Texture="ten")"
              R"( crs:SharpenDetail="25")");
  EXPECT_EQ(Note("Whites2012"), "times -1");
  EXPECT_EQ(Note("Dehaze"), "clamped to 0..100");
  ImportedXmp(R"(crs:PostCropVignetteAmount="-33" crs:Dehaze="-10")");
  EXPECT_EQ(Outcome("PostCropVignetteAmount"), "ignored");
  EXPECT_EQ(Note("PostCropVignetteAmount"), "no counterpart below 0");
  EXPECT_EQ(Outcome("Dehaze"), "ignored");
  EXPECT_EQ(Outcome("Texture"), "ignored");
  EXPECT_EQ(Note("Texture"), "it is not a number");
  EXPECT_EQ(Outcome("SharpenDetail"), "ignored");
  EXPECT_EQ(Note("SharpenDetail"), "no counterpart");
}

TEST_F(SettingsImportTest, TheGreaterOfTwoSourcesWins) {
  const char* const green_first = R"(crs:DefringeGreenAmount="3" crs:DefringePurpleAmount="2")";
  const char* const green_last = R"(crs:DefringePurpleAmount="2" crs:DefringeGreenAmount="3")";
  EXPECT_EQ(ImportedXmp(green_first).at("defringe"), 15);
  EXPECT_EQ(ImportedXmp(green_last).at("defringe"), 15);
}

// At 6500 the engine keeps the camera's white balance.
TEST_F(SettingsImportTest, AWhiteBalanceAsShotIsNeutral) {
  const Json settings = ImportedXmp(R"(crs:WhiteBalance="As Shot" crs:Temperature="4900" crs:Tint="+9")");
  EXPECT_EQ(settings.at("temperature"), 6500);
  EXPECT_EQ(settings.at("tint"), 0);
  EXPECT_EQ(Outcome("Temperature"), "ignored");
}

// The temperature in the file is that of the light, and the engine's is relative to the camera's.
TEST_F(SettingsImportTest, AWhiteBalanceIsRelativeToTheRawFileNextToIt) {
  const std::string custom = R"(crs:WhiteBalance="Custom" crs:Temperature="4900" crs:Tint="+9")";
  EXPECT_FALSE(ImportedXmp(custom).contains("temperature"));
  EXPECT_EQ(Note("Temperature"),
            "the white balance as shot is unknown: there is no RAW file next to the XMP file");
  fs::copy_file(LUMVIK_SAMPLES "/sample_small.ARW", Path("in.ARW"));
  const Json settings = ImportedXmp(custom);
  EXPECT_NEAR(1e6 / settings.at("temperature").get<double>(), 1e6 / 6500 + 1e6 / 4900 - 1e6 / 4726, 0.1);
  EXPECT_NEAR(settings.at("tint").get<double>(), 9 + 3, 1);
  EXPECT_EQ(Outcome("Temperature"), "scaled");
  EXPECT_EQ(Imported(Path("in.ARW")), settings);
}

TEST_F(SettingsImportTest, GrayscaleIsMinimumSaturation) {
  EXPECT_EQ(ImportedXmp(R"(crs:ConvertToGrayscale="True" crs:Saturation="10")").at("saturation"), -100);
  EXPECT_EQ(ImportedXmp(R"(crs:Saturation="10" crs:ConvertToGrayscale="False")").at("saturation"), 10);
}

std::string CurveElement(const std::string& name, const std::vector<std::string>& points) {
  std::string items;
  for (const std::string& point : points) items += "<rdf:li>" + point + "</rdf:li>";
  return "<crs:" + name + "><rdf:Seq>" + items + "</rdf:Seq></crs:" + name + ">";
}

TEST_F(SettingsImportTest, CurvesAreNormalized) {
  const Json curves = ImportedXmp("", CurveElement("ToneCurvePV2012", {"0, 0", "51, 102", "255, 204"}) +
                                          CurveElement("ToneCurvePV2012Red", {"0, 51", "255, 255"}) +
                                          CurveElement("ToneCurvePV2012Green", {"0,0", "102,51", "255,255"}) +
                                          CurveElement("ToneCurvePV2012Blue", {"0, 0", "255, 255"}))
                          .at("tone_curves");
  EXPECT_EQ(curves.at("master").dump(), "[[0.0,0.0],[0.2,0.4],[1.0,0.8]]");
  EXPECT_EQ(curves.at("red").dump(), "[[0.0,0.2],[1.0,1.0]]");
  EXPECT_EQ(curves.at("green").dump(), "[[0.0,0.0],[0.4,0.2],[1.0,1.0]]");
  EXPECT_EQ(curves.at("blue").dump(), "[]");  // exactly linear, unlike two points
}

TEST_F(SettingsImportTest, InvalidCurvesAreIgnored) {
  const std::vector<std::vector<std::string>> faulty = {
      {"0, 0"}, {"0, 0", "0, 9"}, {"0, 0", "300, 9"}, {"0, 0", "x, 9"}, {"0, 0", "9"}, {"0, 0", "9, "}};
  for (const auto& points : faulty) {
    EXPECT_FALSE(ImportedXmp("", CurveElement("ToneCurvePV2012", points)).contains("tone_curves"));
    EXPECT_EQ(Outcome("ToneCurvePV2012"), "ignored");
  }
  ImportedXmp("", CurveElement("ToneCurvePV2012Name", {"0, 0", "255, 255"}));
  EXPECT_EQ(Note("ToneCurvePV2012Name"), "no counterpart");
}

// Members of a structure, such as a look, are not settings of the photograph.
TEST_F(SettingsImportTest, StructuresAreIgnored) {
  const Json settings = ImportedXmp(R"(crs:Exposure2012="+1")",
                                    R"(<crs:Look><rdf:Description crs:Name="Vivid"><crs:Parameters>)"
                                    R"(<rdf:Description crs:Exposure2012="+4" crs:Contrast2012="+50"/>)"
                                    R"(</crs:Parameters></rdf:Description></crs:Look>)");
  EXPECT_EQ(settings.at("exposure"), 1);
  EXPECT_FALSE(settings.contains("contrast"));
  EXPECT_EQ(outcomes_.size(), 2U);
  EXPECT_EQ(Outcome("Look"), "ignored");
}

TEST_F(SettingsImportTest, SettingsGoToStandardOutputAndTheReportToStandardError) {
  WriteFile(Path("in.xmp"), Xmp("crs:Exposure2012=\"+0.50\" crs:Whites2012=\"+20\" crs:Sharpen=\"a&#xA;b\""));
  const ProcessResult result = Import(Path("in.xmp"));
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, "{\n  \"lumvik\": 2,\n  \"exposure\": 0.5,\n  \"whites\": -20.0\n}\n");
  EXPECT_EQ(result.err,
            "taken    Exposure2012 +0.50: exposure\n"
            "scaled   Whites2012 +20: whites (times -1)\n"
            "ignored  Sharpen a\\nb (no counterpart)\n");
}

TEST_F(SettingsImportTest, TheFileEqualsTheOptions) {
  WriteFile(Path("in.xmp"),
            Xmp(R"(crs:Exposure2012="+0.50" crs:Blacks2012="-7" crs:HueAdjustmentRed="+50")"
                R"( crs:HasCrop="True" crs:CropLeft="0.1" crs:CropTop="0.2" crs:CropRight="0.9")"
                R"( crs:CropBottom="0.8" crs:CropAngle="0")",
                CurveElement("ToneCurvePV2012", {"0, 0", "51, 102", "255, 204"})));
  const ProcessResult result = Import(Path("in.xmp"), {"-o", Path("settings.json")});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, "");
  const std::string in = Photograph("in.png");
  Developed(in, Path("imported.png"), {"--settings", Path("settings.json")});
  const cv::Mat picture = Developed(in, Path("options.png"),
                                    {"--exposure", "0.5", "--blacks", "7", "--hsl", "red=15,0,0", "--crop",
                                     "0.1,0.2,0.8,0.6", "--tone-curve", "0,0 0.2,0.4 1,0.8"});
  EXPECT_EQ(PixelsOf(Path("imported.png")), PixelsOf(Path("options.png")));
  EXPECT_EQ(picture.size(), cv::Size(48, 24));
}

constexpr const char* kNumberNames[] = {"Exposure2012",
                                        "Contrast2012",
                                        "Highlights2012",
                                        "Shadows2012",
                                        "Whites2012",
                                        "Blacks2012",
                                        "Temperature",
                                        "Tint",
                                        "Saturation",
                                        "Vibrance",
                                        "Clarity2012",
                                        "Texture",
                                        "Dehaze",
                                        "Sharpness",
                                        "SharpenRadius",
                                        "LuminanceSmoothing",
                                        "ColorNoiseReduction",
                                        "LensManualDistortionAmount",
                                        "VignetteAmount",
                                        "DefringePurpleAmount",
                                        "DefringeGreenAmount",
                                        "PerspectiveVertical",
                                        "PostCropVignetteAmount",
                                        "PostCropVignetteMidpoint",
                                        "PostCropVignetteRoundness",
                                        "GrainAmount",
                                        "GrainSize",
                                        "SplitToningHighlightHue",
                                        "SplitToningHighlightSaturation",
                                        "SplitToningShadowHue",
                                        "SplitToningShadowSaturation",
                                        "SplitToningBalance"};

// Sets every imported property to this value.
std::string AllWith(const std::string& value) {
  std::string attributes = "crs:HasCrop=\"True\"";
  const auto add = [&](const std::string& name) { attributes += " crs:" + name + "=\"" + value + "\""; };
  for (const char* name : kNumberNames) add(name);
  for (const char* name : {"HueAdjustment", "SaturationAdjustment", "LuminanceAdjustment"}) {
    for (const char* color : {"Red", "Orange", "Yellow", "Green", "Aqua", "Blue", "Purple", "Magenta"}) {
      add(std::string(name) + color);
    }
  }
  for (const char* name : {"CropLeft", "CropTop", "CropRight", "CropBottom", "CropAngle"}) add(name);
  return attributes;
}

TEST_F(SettingsImportTest, AnyValueGivesAFileThatDevelopReads) {
  const std::string in = Photograph("in.png");
  std::vector<std::string> values = {"NaN", "-nan", "inf", "-inf", "1e999", "", "ten"};  // not numbers
  for (const char* number : {"0", "1e-320", "0.009", "1.000001", "10.001", "20.001", "100.001", "150.001",
                             "180.001", "255.001", "360.001", "1000", "1666.9", "25000.1", "1e30", "1e308"}) {
    values.insert(values.end(), {number, std::string("-") + number});
  }
  for (const std::string& value : values) {
    WriteFile(Path("in.xmp"),
              Xmp(AllWith(value), CurveElement("ToneCurvePV2012", {"0, " + value, "255, 255"}) +
                                      CurveElement("ToneCurvePV2012Red", {"0, 0", value + ", 9"})));
    ASSERT_EQ(Import(Path("in.xmp"), {"-o", Path("settings.json"), "--overwrite"}).status, kSuccess) << value;
    const ProcessResult result =
        Develop(in, Path("out.png"),
                {"--settings", Path("settings.json"), "--save-settings", Path("saved.json"), "--overwrite"});
    EXPECT_EQ(result.status, kSuccess) << value << ": " << result.err;
    Json saved = Json::parse(ReadFile(Path("saved.json")));
    const Json unread = saved;
    saved.merge_patch(Json::parse(ReadFile(Path("settings.json"))));
    EXPECT_EQ(saved, unread) << value;
  }
}

TEST_F(SettingsImportTest, ACurveWithTooManyPointsIsIgnored) {
  std::vector<std::string> points;
  for (int i = 0; i < 20000; ++i)
    points.push_back(std::to_string(0.0123456 * i) + ", " + std::to_string(0.0123456 * i));
  EXPECT_FALSE(ImportedXmp("", CurveElement("ToneCurvePV2012", points)).contains("tone_curves"));
  EXPECT_EQ(Note("ToneCurvePV2012"), "a curve has at most 1024 points");
}

TEST_F(SettingsImportTest, TheOutputCanBeTheSidecar) {
  const std::string in = Photograph("in.jpg");
  WriteFile(Path("in.xmp"), Xmp(R"(crs:Exposure2012="+0.50")"));
  ASSERT_EQ(Import(in, {"-o", Path("in.jpg.lumvik.json")}).status, kSuccess);
  ASSERT_EQ(Develop(in, Path("out.png"), {"--save-settings", Path("saved.json")}).status, kSuccess);
  EXPECT_EQ(Json::parse(ReadFile(Path("saved.json"))).at("exposure"), 0.5);
}

TEST_F(SettingsImportTest, TheMostSpecificSidecarWins) {
  const std::string in = Photograph("in.jpg");
  const auto image = Exiv2::ImageFactory::open(in);
  image->xmpData()["Xmp.crs.Exposure2012"] = "+1.00";
  image->writeMetadata();
  EXPECT_EQ(Imported(in).at("exposure"), 1);
  EXPECT_EQ(file_, in);
  WriteFile(Path("in.XMP"), Xmp(R"(crs:Exposure2012="+2.00")"));
  EXPECT_EQ(Imported(in).at("exposure"), 2);
  WriteFile(Path("in.xmp"), Xmp(R"(crs:Exposure2012="+3.00")"));
  EXPECT_EQ(Imported(in).at("exposure"), 3);
  WriteFile(Path("in.jpg.xmp"), Xmp(R"(crs:Exposure2012="+4.00")"));
  EXPECT_EQ(Imported(in).at("exposure"), 4);
  EXPECT_EQ(file_, Path("in.jpg.xmp"));
}

TEST_F(SettingsImportTest, FilesWithoutSettingsAreRefused) {
  ExpectRefusal(Import(Path("none.xmp")), kFailure, "there is no such file");
  ExpectRefusal(Import(Path("none.jpg")), kFailure, "there is no such file");
  ExpectRefusal(Import(Photograph("in.jpg")), kFailure, "it has no Camera Raw or Lightroom settings");
  WriteFile(Path("in.txt"), "a text that is long enough to be looked at");
  ExpectRefusal(Import(Path("in.txt")), kFailure, "it is neither an XMP file nor a photograph with metadata");
  WriteFile(Path("in.xmp"), Xmp(R"(tiff:ImageWidth="60")"));
  ExpectRefusal(Import(Path("in.xmp")), kFailure, "it has no Camera Raw or Lightroom settings");
}

TEST_F(SettingsImportTest, DamagedXmpIsRefused) {
  const std::string whole = Xmp(R"(crs:Exposure2012="+0.50")");
  WriteFile(Path("old.json"), "last year's work");
  for (const std::string& text : {whole.substr(0, whole.size() / 2), std::string("<x"), std::string("{}"),
                                  std::string("\0\xFF\xFE", 3)}) {
    WriteFile(Path("in.xmp"), text);
    ExpectRefusal(Import(Path("in.xmp"), {"-o", Path("old.json")}), kFailure,
                  "cannot read '" + Path("in.xmp") + "': it ");
  }
  EXPECT_EQ(ReadFile(Path("old.json")), "last year's work");
}

TEST_F(SettingsImportTest, TheOutputMustBeJson) {
  const std::string in = Photograph("in.jpg");
  ExpectRefusal(Import(in, {"-o", in}), kUsage, "does not end in .json");
  ExpectRefusal(RunProcess({LUMVIK_COMMAND, "settings"}), kUsage, "required");
}

}  // namespace
}  // namespace lumvik::test
