// Arguments: what the command explains, what it accepts and what it refuses with status 2.
#include <filesystem>

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

constexpr AdjustmentRange kRanges[] = {
    {"--exposure", "STOPS", "-10", "10", "-10.01", "10.01"},
    {"--brightness", "PERCENT", "-100", "100", "-100.5", "101"},
    {"--contrast", "PERCENT", "-100", "100", "-101", "100.001"},
    {"--temperature", "KELVIN", "1667", "25000", "1666.9", "25001"},
    {"--tint", "TINT", "-150", "150", "-151", "1e9"},
};

using UsageTest = CommandTest;

TEST_F(UsageTest, VersionIsPrinted) {
  const ProcessResult result = Lumvik({"--version"});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, "lumvik 1.0.0\n");
  EXPECT_EQ(result.err, "");
}

TEST_F(UsageTest, HelpNamesTheCommands) {
  const ProcessResult result = Lumvik({"--help"});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_NE(result.out.find("develop"), std::string::npos) << result.out;
  EXPECT_EQ(result.err, "");
}

TEST_F(UsageTest, HelpOfDevelopNamesEveryOptionWithItsUnitAndRange) {
  const ProcessResult result = Lumvik({"develop", "--help"});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.err, "");
  for (const AdjustmentRange& range : kRanges) {
    const std::string expected =
        std::string(range.option) + " " + range.unit + ":" + range.lowest + ".." + range.highest;
    EXPECT_NE(result.out.find(expected), std::string::npos) << expected << " is missing in:\n" << result.out;
  }
  for (const char* expected : {"IN", "-o,--output OUT", "--quality LEVEL:1..4",
                               "--jpeg-quality QUALITY:1..100", "--bits BITS", "--no-exif"}) {
    EXPECT_NE(result.out.find(expected), std::string::npos) << expected << " is missing in:\n" << result.out;
  }
}

TEST_F(UsageTest, IncompleteOrUnknownArgumentsAreRefused) {
  const std::string in = Photograph("in.png");
  const std::string out = Path("out.png");
  ExpectRefusal(Lumvik({}), kUsage, "A command (see lumvik --help) is required");
  ExpectRefusal(Lumvik({"print"}), kUsage, "not expected: print");
  ExpectRefusal(Lumvik({"develop", "-o", out}), kUsage, "IN is required");
  ExpectRefusal(Lumvik({"develop", in}), kUsage, "--output is required");
  ExpectRefusal(Lumvik({"develop", in, "-o"}), kUsage, "--output");
  ExpectRefusal(Lumvik({"develop", in, in, "-o", out}), kUsage, in);
  ExpectRefusal(Lumvik({"develop", in, "-o", out, "--sepia", "3"}), kUsage, "--sepia");
  ExpectRefusal(Lumvik({"develop", in, "-o", out, "--exposure"}), kUsage, "--exposure");
  ExpectRefusal(Lumvik({"develop", in, "-o", out, "--tint", "1", "--tint", "2"}), kUsage, "--tint");
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(UsageTest, BoundsOfAnAdjustmentAreAccepted) {
  const std::string in = Photograph("in.png");
  for (const AdjustmentRange& range : kRanges) {
    for (const char* value : {range.lowest, range.highest}) {
      const ProcessResult result = Develop(in, Path("out.png"), {range.option, value});
      EXPECT_EQ(result.status, kSuccess) << range.option << ' ' << value << ": " << result.err;
    }
  }
}

TEST_F(UsageTest, ValuesOutsideTheRangeAreRefused) {
  const std::string in = Photograph("in.png");
  for (const AdjustmentRange& range : kRanges) {
    for (const char* value : {range.too_low, range.too_high, "nan"}) {
      ExpectRefusal(Develop(in, Path("out.png"), {range.option, value}), kUsage,
                    std::string(range.option) + ": '" + value + "' is not a number in " + range.lowest +
                        ".." + range.highest);
    }
  }
  EXPECT_FALSE(std::filesystem::exists(Path("out.png")));
}

TEST_F(UsageTest, ValuesThatAreNotNumbersAreRefused) {
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

TEST_F(UsageTest, BitsThatTheFormatCannotHoldAreRefused) {
  const std::string in = Photograph("in.png");
  ExpectRefusal(Develop(in, Path("out.jpg"), {"--bits", "16"}), kUsage, "a JPEG holds 8 bits");
  ExpectRefusal(Develop(in, Path("out.tif"), {"--bits", "8"}), kUsage,
                "a TIFF is always written with 16 bits");
  EXPECT_FALSE(std::filesystem::exists(Path("out.jpg")));
  EXPECT_FALSE(std::filesystem::exists(Path("out.tif")));
}

TEST_F(UsageTest, UnknownEndingsAreRefusedBeforeAnyFileIsRead) {
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
