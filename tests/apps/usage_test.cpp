// Arguments: help, accepted values and usage errors with status 2.
#include <filesystem>
#include <ostream>

#include "command_test.h"

namespace lumvik::test {
namespace {

ProcessResult Lumvik(const std::vector<std::string>& arguments) {
  std::vector<std::string> all = Command();
  all.insert(all.end(), arguments.begin(), arguments.end());
  return RunProcess(all);
}

struct AdjustmentRange {
  const char* option;
  const char* unit;
  const char* lowest;
  const char* highest;
  const char* too_low;
  const char* too_high;
};

void PrintTo(const AdjustmentRange& range, std::ostream* out) {
  *out << range.option;
}

constexpr AdjustmentRange kRanges[] = {
    {"--exposure", "STOPS", "-10", "10", "-10.01", "10.01"},
    {"--brightness", "PERCENT", "-100", "100", "-100.5", "101"},
    {"--contrast", "PERCENT", "-100", "100", "-101", "100.001"},
    {"--temperature", "KELVIN", "1667", "25000", "1666.9", "25001"},
    {"--tint", "TINT", "-150", "150", "-151", "1e9"},
    {"--highlights", "PERCENT", "-100", "100", "-101", "101"},
    {"--shadows", "PERCENT", "-100", "100", "-101", "101"},
    {"--whites", "PERCENT", "-100", "100", "-101", "101"},
    {"--blacks", "PERCENT", "-100", "100", "-101", "101"},
    {"--saturation", "PERCENT", "-100", "100", "-101", "101"},
    {"--vibrance", "PERCENT", "-100", "100", "-101", "101"},
    {"--clarity", "PERCENT", "-100", "100", "-101", "101"},
    {"--texture", "PERCENT", "-100", "100", "-101", "101"},
    {"--dehaze", "PERCENT", "0", "100", "-1", "101"},
    {"--nr-luminance", "PERCENT", "0", "100", "-1", "101"},
    {"--nr-color", "PERCENT", "0", "100", "-1", "101"},
    {"--sharpening-amount", "AMOUNT", "0", "150", "-1", "151"},
    {"--sharpening-radius", "PIXELS", "0.01", "100", "0", "101"},
    {"--sharpening-threshold", "THRESHOLD", "0", "65535", "-1", "65536"},
    {"--distortion", "PERCENT", "-100", "100", "-101", "101"},
    {"--ca-correction", "PERCENT", "0", "100", "-1", "101"},
    {"--lens-vignette", "PERCENT", "0", "100", "-1", "101"},
    {"--defringe", "PERCENT", "0", "100", "-1", "101"},
    {"--rotation", "DEGREES", "-180", "180", "-181", "181"},
    {"--perspective-h", "PERCENT", "-100", "100", "-101", "101"},
    {"--perspective-v", "PERCENT", "-100", "100", "-101", "101"},
    {"--vignette-amount", "PERCENT", "-100", "100", "-101", "101"},
    {"--vignette-midpoint", "PERCENT", "0", "100", "-1", "101"},
    {"--vignette-roundness", "PERCENT", "-100", "100", "-101", "101"},
    {"--grain-amount", "PERCENT", "0", "100", "-1", "101"},
    {"--grain-size", "PERCENT", "0", "100", "-1", "101"},
};

using UsageTest = CommandTest;

TEST_F(UsageTest, VersionIsPrinted) {
  const ProcessResult result = Lumvik({"--version"});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, "lumvik 1.0.0\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(UsageTest, HelpListsTheCommands) {
  const ProcessResult result = Lumvik({"--help"});
  EXPECT_EQ(result.status, kSuccess);
  for (const char* command : {"develop", "thumb", "hash", "similar"}) {
    EXPECT_NE(result.out.find(command), std::string::npos) << result.out;
  }
  EXPECT_EQ(result.err, "");
}

TEST_F(UsageTest, DevelopHelpListsEveryOptionWithUnitAndRange) {
  const ProcessResult result = Lumvik({"develop", "--help"});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.err, "");
  for (const AdjustmentRange& range : kRanges) {
    const std::string expected =
        std::string(range.option) + " " + range.unit + ":" + range.lowest + ".." + range.highest;
    EXPECT_NE(result.out.find(expected), std::string::npos) << expected << " is missing in:\n" << result.out;
  }
  for (const char* expected :
       {"IN", "-o,--output OUT", "--quality LEVEL:1..4", "--jpeg-quality QUALITY:1..100", "--bits BITS",
        "--no-exif", "--settings FILE", "--save-settings FILE", "--tone-curve \"X,Y ...\"",
        "--tone-curve-red", "--tone-curve-green", "--tone-curve-blue", "--hsl BAND=HUE,SATURATION,LUMINANCE",
        "--split-highlights HUE,SATURATION", "--split-shadows HUE,SATURATION",
        "--split-balance PERCENT:-100..100", "--crop X,Y,W,H", "--flip-h,--no-flip-h",
        "--flip-v,--no-flip-v"}) {
    EXPECT_NE(result.out.find(expected), std::string::npos) << expected << " is missing in:\n" << result.out;
  }
}

TEST_F(UsageTest, DevelopHelpGroupsTheOptions) {
  const std::string help = Lumvik({"develop", "--help"}).out;
  std::size_t at = 0;
  for (const char* part : {"\nTone:",          "--tone-curve-blue",
                           "\nColor:",         "--hsl",
                           "\nDetail:",        "--sharpening-threshold",
                           "\nLens:",          "--defringe",
                           "\nGeometry:",      "--flip-v",
                           "\nEffects:",       "--grain-size",
                           "\nSettings file:", "--settings",
                           "\nAutomatic:",     "--auto-crop",
                           "\nOutput:",        "--save-settings",
                           "\nPreview:",       "--bg-blur"}) {
    at = help.find(part, at);
    ASSERT_NE(at, std::string::npos) << part << " is missing or out of place in:\n" << help;
  }
}

TEST_F(UsageTest, ListValuesAreChecked) {
  const std::string in = Photograph("in.png");
  const struct {
    std::vector<std::string> options;
    const char* told;
  } cases[] = {
      {{"--crop", "0,0,1"}, "--crop: '0,0,1' is not 4 numbers separated by commas"},
      {{"--crop", "0,0,1,"}, "--crop: '' is not a number in 0..1"},
      {{"--crop", "0,0,1,nan"}, "--crop: 'nan' is not a number in 0..1"},
      {{"--crop", "-0.1,0,1,1"}, "--crop: '-0.1' is not a number in 0..1"},
      {{"--split-highlights", "361,5"}, "--split-highlights: '361' is not a number in 0..360"},
      {{"--split-shadows", "5,-1"}, "--split-shadows: '-1' is not a number in 0..100"},
      {{"--split-balance", "101"}, "--split-balance: '101' is not a number in -100..100"},
      {{"--hsl", "red=1,2"}, "--hsl: '1,2' is not 3 numbers separated by commas"},
      {{"--hsl", "red=181,0,0"}, "--hsl: '181' is not a number in -180..180"},
      {{"--hsl", "red=0,0,101"}, "--hsl: '101' is not a number in -100..100"},
      {{"--hsl", "pink=1,2,3"}, "--hsl: 'pink=1,2,3' does not start with a band"},
      {{"--hsl", "red"}, "--hsl: 'red' does not start with a band"},
      {{"--hsl", "red=1,2,3", "--hsl", "red=1,2,3"}, "--hsl: band red is given twice"},
      {{"--tone-curve", ""}, "--tone-curve: '': a curve needs at least two points"},
      {{"--tone-curve", "0.5,0.5"}, "--tone-curve: '0.5,0.5': a curve needs at least two points"},
      {{"--tone-curve-red", "0,0 1"}, "--tone-curve-red: '1' is not 2 numbers separated by commas"},
      {{"--tone-curve-red", "0,0 1,1.1"}, "--tone-curve-red: '1.1' is not a number in 0..1"},
      {{"--tone-curve-red", "0,0 inf,1"}, "--tone-curve-red: 'inf' is not a number in 0..1"},
      {{"--tone-curve-blue", "0,0 0.5,1 0.5,1"}, "the points of a curve must be in ascending order of x"},
      {{"--flip-h", "--flip-h"}, "--flip-h"},
      {{"--flip-h=false"}, "flip-h"},
  };
  for (const auto& c : cases) ExpectRefusal(Develop(in, Path("out.png"), c.options), kUsage, c.told);
  EXPECT_FALSE(std::filesystem::exists(Path("out.png")));
}

TEST_F(UsageTest, MissingAndUnknownArgumentsAreRefused) {
  const std::string in = Photograph("in.png");
  const std::string out = Path("out.png");
  ExpectRefusal(Lumvik({"print"}), kUsage, "not expected: print");
  ExpectRefusal(Lumvik({"develop", "-o", out}), kUsage, "IN is required");
  ExpectRefusal(Lumvik({"develop", in}), kUsage, "--output or --preview is required");
  ExpectRefusal(Lumvik({"develop", in, "-o"}), kUsage, "--output");
  ExpectRefusal(Lumvik({"develop", in, in, "-o", out}), kUsage, in);
  ExpectRefusal(Lumvik({"develop", in, "-o", out, "--sepia", "3"}), kUsage, "--sepia");
  ExpectRefusal(Lumvik({"develop", in, "-o", out, "--exposure"}), kUsage, "--exposure");
  ExpectRefusal(Lumvik({"develop", in, "-o", out, "--tint", "1", "--tint", "2"}), kUsage, "--tint");
  EXPECT_FALSE(std::filesystem::exists(out));
}

class RangeTest : public CommandTest, public ::testing::WithParamInterface<AdjustmentRange> {};
INSTANTIATE_TEST_SUITE_P(All, RangeTest, ::testing::ValuesIn(kRanges),
                         [](const auto& range) { return TestNameOf(range.param.option); });

TEST_P(RangeTest, BoundsAreAccepted) {
  const AdjustmentRange& range = GetParam();
  const std::string in = Photograph("in.png");
  for (const char* value : {range.lowest, range.highest}) {
    const ProcessResult result = Develop(in, Path("out.png"), {range.option, value});
    EXPECT_EQ(result.status, kSuccess) << range.option << ' ' << value << ": " << result.err;
  }
}

TEST_P(RangeTest, ValuesOutsideAreRefused) {
  const AdjustmentRange& range = GetParam();
  const std::string in = Photograph("in.png");
  for (const char* value : {range.too_low, range.too_high, "nan"}) {
    ExpectRefusal(Develop(in, Path("out.png"), {range.option, value}), kUsage,
                  std::string(range.option) + ": '" + value + "' is not a number in " + range.lowest + ".." +
                      range.highest);
  }
  EXPECT_FALSE(std::filesystem::exists(Path("out.png")));
}

TEST_F(UsageTest, NonNumericValuesAreRefused) {
  const std::string in = Photograph("in.png");
  for (const char* value : {"-nan", "inf", "-inf", "1e999", "much", "1,5", "5x"}) {
    ExpectRefusal(Develop(in, Path("out.png"), {std::string("--tint=") + value}), kUsage,
                  std::string("--tint: '") + value + "' is not a number in -150..150");
  }
  ExpectRefusal(Develop(in, Path("out.png"), {"--tint", ""}), kUsage, "--tint");
  EXPECT_FALSE(std::filesystem::exists(Path("out.png")));
}

TEST_F(UsageTest, QualitiesAndBitsAreWholeNumbersInTheirRanges) {
  const std::string in = Photograph("in.png");
  for (const char* value : {"0", "5", "-1", "2.5", "best"}) {
    ExpectRefusal(Develop(in, Path("out.jpg"), {"--quality", value}), kUsage,
                  "is not a whole number in 1..4");
  }
  for (const char* value : {"0", "101", "90.5", "99999999999999999999"}) {
    ExpectRefusal(Develop(in, Path("out.jpg"), {"--jpeg-quality", value}), kUsage,
                  "is not a whole number in 1..100");
  }
  for (const char* value : {"0", "12", "32", "deep"}) {
    ExpectRefusal(Develop(in, Path("out.png"), {"--bits", value}), kUsage, "is not 8 or 16");
  }
}

TEST_F(UsageTest, UnsupportedBitDepthsAreRefused) {
  const std::string in = Photograph("in.png");
  ExpectRefusal(Develop(in, Path("out.jpg"), {"--bits", "16"}), kUsage, "JPEG has 8 bits");
  ExpectRefusal(Develop(in, Path("out.tif"), {"--bits", "8"}), kUsage, "TIFF is written with 16 bits");
  EXPECT_FALSE(std::filesystem::exists(Path("out.jpg")));
  EXPECT_FALSE(std::filesystem::exists(Path("out.tif")));
}

TEST_F(UsageTest, UnknownExtensionsAreRefusedBeforeAnyFileIsRead) {
  std::filesystem::create_directory(Path("folder.jpg"));
  for (const char* name : {"out.webp", "out.jpgx", "out.", "out", "jpg", ".jpg", "out.jpg.bak",
                           "folder.jpg/out", "folder.jpg/"}) {
    ExpectRefusal(Develop(Path("missing.jpg"), Path(name)), kUsage,
                  "--output: '" + Path(name) + "' does not end in .jpg, .jpeg, .png, .tif or .tiff");
  }
  ExpectRefusal(Develop(Path("missing.jpg"), ""), kUsage, "--output");
}

}  // namespace
}  // namespace lumvik::test
