// A photograph from standard input, and an image to standard output. Needs a shell.
#include <cstdio>
#include <filesystem>
#include <memory>
#include <opencv2/imgcodecs.hpp>
#include <stdexcept>
#include <vector>

#include "command_test.h"
#include "exif_file.h"
#include "terminal/standard_streams.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class StandardStreamTest : public CommandTest {
 protected:
  // Runs a shell command in which "$0" is lumvik, "$1" the folder and "$2" the given file.
  ProcessResult Shell(const std::string& command, const std::string& file = "") const {
    return RunProcess({"bash", "-o", "pipefail", "-c", command, LUMVIK_COMMAND, Path(""), file});
  }

  const std::string in_ = Photograph("in.png");
};

TEST_F(StandardStreamTest, ThePhotographCanComeFromStandardInput) {
  const ProcessResult result = Shell(R"("$0" develop - -o "$1"/out.png --contrast 20 < "$2")", in_);
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, Path("") + "/out.png 60x40\n");
  const cv::Mat expected = Developed(in_, Path("expected.png"), {"--contrast", "20"});
  EXPECT_EQ(GreatestDifference(cv::imread(Path("out.png")), expected), 0);
}

TEST_F(StandardStreamTest, MetadataOfStandardInputIsKept) {
  ASSERT_EQ(Shell(R"(cat "$2" | "$0" develop - -o "$1"/out.jpg)", kTower).status, kSuccess);
  EXPECT_EQ(TagValue(ReadExif(Path("out.jpg")), "Exif.Image.Model"),
            TagValue(ReadExif(kTower), "Exif.Image.Model"));
  ASSERT_EQ(Shell(R"(cat "$2" | "$0" develop - -o "$1"/raw.jpg --quality 4)", kRawSample).status, kSuccess);
  EXPECT_EQ(TagValue(ReadExif(Path("raw.jpg")), "Exif.Image.Model"),
            TagValue(ReadExif(kRawSample), "Exif.Image.Model"));
}

TEST_F(StandardStreamTest, OtherCommandsReadStandardInput) {
  for (const char* command :
       {"mask - -o \"$1\"/mask.png", "cutout - -o \"$1\"/cutout.png", "histogram -", "suggest -"}) {
    const ProcessResult result =
        Shell(std::string("\"$0\" ") + command + " --quality 4 < \"$2\"", kRawSample);
    EXPECT_EQ(result.status, kSuccess) << command << ": " << result.err;
  }
}

TEST_F(StandardStreamTest, TheImageCanGoToStandardOutput) {
  const struct {
    const char* format;
    const char* start;
  } cases[] = {{"jpg", "\xFF\xD8\xFF"}, {"png", "\x89PNG"}, {"tiff", "II*"}};
  for (const auto& c : cases) {
    const ProcessResult result =
        Shell("\"$0\" develop \"$2\" -o - --size 30 --format " + std::string(c.format), in_);
    EXPECT_EQ(result.status, kSuccess) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out.rfind(c.start, 0), 0U) << c.format;
    const std::vector<char> bytes(result.out.begin(), result.out.end());
    EXPECT_EQ(cv::imdecode(bytes, cv::IMREAD_UNCHANGED).size(), cv::Size(30, 20));
  }
}

TEST_F(StandardStreamTest, CommandsFormAPipe) {
  const ProcessResult result = Shell(
      R"("$0" develop - -o - --format tiff --contrast 20 < "$2" | "$0" develop - -o "$1"/out.png)", in_);
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(cv::imread(Path("out.png")).size(), cv::Size(60, 40));
}

TEST_F(StandardStreamTest, WarningsDoNotMixWithTheImage) {
  WriteFile(Path("cut.jpg"), ReadFile(kTower).substr(0, 600000));
  const ProcessResult result =
      Shell(R"("$0" develop "$2" -o - --format jpg --accept-damaged)", Path("cut.jpg"));
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_NE(result.err.find("lumvik: warning: "), std::string::npos) << result.err;
  const std::vector<char> bytes(result.out.begin(), result.out.end());
  EXPECT_FALSE(cv::imdecode(bytes, cv::IMREAD_UNCHANGED).empty());
}

TEST_F(StandardStreamTest, DamageFromStandardInputIsFound) {
  WriteFile(Path("cut.jpg"), ReadFile(kTower).substr(0, 600000));
  ExpectRefusal(Shell(R"("$0" develop - -o "$1"/out.jpg < "$2")", Path("cut.jpg")), kDamaged,
                "lumvik: standard input is damaged: the JPEG ends in the middle of the image; nothing was");
  WriteFile(Path("cut.png"), ReadFile(in_).substr(0, 100));
  const ProcessResult png = Shell(R"("$0" develop - -o "$1"/out.jpg < "$2")", Path("cut.png"));
  EXPECT_EQ(png.status, kDamaged);  // libpng prints its own line
  EXPECT_NE(png.err.find("lumvik: cannot open standard input: "), std::string::npos) << png.err;
  EXPECT_FALSE(fs::exists(Path("out.jpg")));
}

TEST_F(StandardStreamTest, InputIsLimited) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), std::fclose);
  const std::string bytes(200000, 'x');
  ASSERT_EQ(std::fwrite(bytes.data(), 1, bytes.size(), file.get()), bytes.size());
  std::rewind(file.get());
  EXPECT_EQ(ReadToEnd(file.get(), bytes.size()), bytes);
  std::rewind(file.get());
  EXPECT_THROW(ReadToEnd(file.get(), bytes.size() - 1), std::runtime_error);
}

TEST_F(StandardStreamTest, EmptyInput) {
  ExpectRefusal(Shell(R"("$0" develop - -o "$1"/out.jpg < /dev/null)"), kFailure, "standard input is empty");
}

TEST_F(StandardStreamTest, ATerminalIsRefused) {
  if (std::system("command -v script > /dev/null") != 0) GTEST_SKIP() << "needs script(1)";
  const std::string on_terminal = "script -q -e -c '\"" LUMVIK_COMMAND "\" develop ";
  const ProcessResult output = Shell(on_terminal + "\"" + in_ + "\" -o - --format jpg' /dev/null");
  EXPECT_EQ(output.status, kFailure);
  EXPECT_NE(output.out.find("standard output is a terminal"), std::string::npos) << output.out;
  const ProcessResult input = Shell(on_terminal + "- -o \"" + Path("out.jpg") + "\"' /dev/null");
  EXPECT_EQ(input.status, kFailure);
  EXPECT_NE(input.out.find("standard input is a terminal"), std::string::npos) << input.out;
}

TEST_F(StandardStreamTest, AClosedPipeIsAnError) {
  const ProcessResult result =
      Shell(R"("$0" develop "$2" -o - --format png | true; exit ${PIPESTATUS[0]})", kTower);
  ExpectRefusal(result, kFailure, "cannot write to standard output: Broken pipe");
}

TEST_F(StandardStreamTest, AFullDiskIsNamed) {
  const ProcessResult result = Shell(R"("$0" develop "$2" -o - --format png > /dev/full)", in_);
  ExpectRefusal(result, kDiskFull, "cannot write to standard output: No space left on device");
}

TEST_F(StandardStreamTest, UsageIsChecked) {
  const auto refused = [&](const std::string& options, const std::string& part) {
    ExpectRefusal(Shell("\"$0\" develop \"$2\" " + options + " | cat", in_), kUsage, part);
  };
  refused("-o -", "--format is required");
  refused("-o - --format gif", "--format: 'gif' is not jpg, png or tiff");
  refused("-o - --format jpg --json", "--json");
  refused("-o - --format jpg --keep-times", "--keep-times");
  refused("-o - --format jpg --bits 16", "JPEG has 8 bits");
  refused("-o \"$1\"/out.jpg --format png", "--format");
  EXPECT_FALSE(fs::exists(Path("out.jpg")));
}

// The file named "-" has a path.
TEST_F(StandardStreamTest, AFileNamedDash) {
  fs::copy_file(in_, Path("-"));
  const ProcessResult result = Shell(R"(cd "$1" && "$0" develop ./- -o out.jpg)");
  EXPECT_EQ(result.status, kSuccess) << result.err;
}

}  // namespace
}  // namespace lumvik::test
