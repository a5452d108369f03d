// `lumvik thumb`: output, messages and failures.
#include <sys/stat.h>

#include <filesystem>
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class ThumbTest : public CommandTest {
 protected:
  static ProcessResult Thumb(const std::string& input, const std::string& output,
                             std::vector<std::string> command = Command()) {
    command.insert(command.end(), {"thumb", input, "-o", output});
    return RunProcess(command);
  }
};

TEST_F(ThumbTest, AThumbnailOfAPhotograph) {
  const std::string out = Path("t.jpg");
  const ProcessResult result = Thumb(LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg", out);
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, out + " 160x107\n");
  EXPECT_EQ(result.err, "");
  const cv::Mat thumbnail = cv::imread(out);
  ASSERT_EQ(thumbnail.size(), cv::Size(160, 107));
}

TEST_F(ThumbTest, TheEmbeddedPreviewOfARawFile) {
  const std::string out = Path("t.JPEG");
  const ProcessResult result = Thumb(LUMVIK_SAMPLES "/sample_small.ARW", out);
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, out + " 1616x1080\n");
  EXPECT_EQ(cv::imread(out, cv::IMREAD_IGNORE_ORIENTATION | cv::IMREAD_COLOR).size(), cv::Size(1616, 1080));
}

TEST_F(ThumbTest, NonAsciiNames) {
  const std::string out = Path("\xC3\xBC.jpg");
  EXPECT_EQ(Thumb(Photograph("\xC3\xA9t\xC3\xA9.png"), out).out, out + " 60x40\n");
  EXPECT_EQ(cv::imread(out).size(), cv::Size(60, 40));
}

TEST_F(ThumbTest, ThePhotographIsNeverOverwritten) {
  const std::string in = Photograph("in.jpg");
  const std::string before = ReadFile(in);
  fs::create_symlink("in.jpg", Path("link.jpg"));
  for (const char* name : {"in.jpg", "link.jpg"}) {
    ExpectRefusal(Thumb(in, Path(name)), kFailure, "it is the input photograph");
  }
  EXPECT_EQ(ReadFile(in), before);
}

TEST_F(ThumbTest, AFailureKeepsTheExistingFile) {
  WriteFile(Path("old.jpg"), "last year's work");
  WriteFile(Path("text.jpg"), "not a photograph at all\n");
  ExpectRefusal(Thumb(Path("text.jpg"), Path("old.jpg")), kFailure,
                "'" + Path("text.jpg") + "' is neither a RAW file nor an image of a known format");
  ExpectRefusal(Thumb(Path("missing.ARW"), Path("old.jpg")), kFailure, "there is no such file");
  ExpectRefusal(Thumb(LUMVIK_TEST_DATA "/no_thumb.dng", Path("old.jpg")), kFailure,
                "the RAW file has no preview");
  EXPECT_EQ(ReadFile(Path("old.jpg")), "last year's work");
  ExpectRefusal(Thumb(LUMVIK_TEST_DATA "/no_thumb.dng", Path("new.jpg")), kFailure, "has no preview");
  EXPECT_FALSE(fs::exists(Path("new.jpg")));
}

TEST_F(ThumbTest, AFullDiskKeepsTheExistingFile) {
  WriteFile(Path("old.jpg"), "last year's work");
  const std::vector<std::string> little_room = {"sh", "-c", "trap '' XFSZ; ulimit -f 8; exec \"$0\" \"$@\"",
                                                LUMVIK_COMMAND};
  ExpectRefusal(Thumb(LUMVIK_SAMPLES "/sample_small.ARW", Path("old.jpg"), little_room), kFailure,
                "cannot write '" + Path("old.jpg") + "': File too large");
  EXPECT_EQ(ReadFile(Path("old.jpg")), "last year's work");
}

TEST_F(ThumbTest, OtherFormatsAreRefused) {
  const std::string in = Photograph("in.png");
  ExpectRefusal(Thumb(in, Path("t.png")), kUsage,
                "--output: '" + Path("t.png") + "' does not end in .jpg or .jpeg");
  EXPECT_FALSE(fs::exists(Path("t.png")));
}

}  // namespace
}  // namespace lumvik::test
