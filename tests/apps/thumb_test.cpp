// `lumvik thumb`: output, messages and failures.
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class ThumbTest : public CommandTest {
 protected:
  static ProcessResult Thumb(const std::string& input, const std::string& output,
                             const std::vector<std::string>& options = {},
                             std::vector<std::string> command = Command()) {
    command.insert(command.end(), {"thumb", input, "-o", output});
    command.insert(command.end(), options.begin(), options.end());
    return RunProcess(command);
  }

  // What `lumvik info` knows of a file.
  static nlohmann::json Info(const std::string& file) {
    std::vector<std::string> command = Command();
    command.insert(command.end(), {"info", "--json", file});
    return nlohmann::json::parse(RunProcess(command).out).at(0);
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
  ExpectRefusal(Thumb(Path("text.jpg"), Path("old.jpg"), {"--overwrite"}), kFailure,
                "'" + Path("text.jpg") + "' is neither a RAW file nor an image of a known format");
  ExpectRefusal(Thumb(Path("missing.ARW"), Path("old.jpg"), {"--overwrite"}), kFailure,
                "there is no such file");
  ExpectRefusal(Thumb(LUMVIK_TEST_DATA "/no_thumb.dng", Path("old.jpg"), {"--overwrite"}), kFailure,
                "the RAW file has no preview");
  EXPECT_EQ(ReadFile(Path("old.jpg")), "last year's work");
  ExpectRefusal(Thumb(LUMVIK_TEST_DATA "/no_thumb.dng", Path("new.jpg")), kFailure, "has no preview");
  EXPECT_FALSE(fs::exists(Path("new.jpg")));
}

TEST_F(ThumbTest, AFullDiskKeepsTheExistingFile) {
  WriteFile(Path("old.jpg"), "last year's work");
  const std::vector<std::string> little_room = {"sh", "-c", "trap '' XFSZ; ulimit -f 8; exec \"$0\" \"$@\"",
                                                LUMVIK_COMMAND};
  const ProcessResult result =
      Thumb(LUMVIK_SAMPLES "/sample_small.ARW", Path("old.jpg"), {"--overwrite"}, little_room);
  ExpectRefusal(result, kDiskFull, "cannot write '" + Path("old.jpg") + "': File too large");
  EXPECT_EQ(ReadFile(Path("old.jpg")), "last year's work");
}

TEST_F(ThumbTest, AllKindsHaveTheSizeThatIsWanted) {
  for (const std::string& input : {kRawSample, std::string(LUMVIK_TEST_DATA "/cat.jpg"), kTower}) {
    const std::string out = Path("t.jpg");
    EXPECT_EQ(Thumb(input, out, {"--size", "300"}).status, kSuccess);
    const cv::Size size = cv::imread(out, cv::IMREAD_IGNORE_ORIENTATION | cv::IMREAD_COLOR).size();
    EXPECT_EQ(std::max(size.width, size.height), 300) << input;
    EXPECT_EQ(size, cv::imread(out).size()) << input << " is not upright";
  }
  const std::string small = Photograph("small.png");
  EXPECT_EQ(Thumb(small, Path("s.jpg"), {"--size", "300"}).out, Path("s.jpg") + " 60x40\n") << "enlarged";
}

TEST_F(ThumbTest, ThePositionOfARawFileIsInItsHemisphere) {
  for (const std::vector<std::string>& options : {std::vector<std::string>(), {"--size", "200"}}) {
    EXPECT_EQ(Thumb(kRawSample, Path("t.jpg"), options).status, kSuccess);
    const nlohmann::json thumbnail = Info(Path("t.jpg"));
    const nlohmann::json photograph = Info(kRawSample);
    EXPECT_LT(photograph.at("gps_latitude"), 0);
    for (const char* key : {"gps_latitude", "gps_longitude"}) {
      EXPECT_NEAR(thumbnail.at(key).get<double>(), photograph.at(key).get<double>(), 1e-6) << key;
    }
  }
}

TEST_F(ThumbTest, MetadataCanBeLeftOut) {
  for (const char* size : {"--size=200", "--size=50"}) {
    EXPECT_EQ(Thumb(kRawSample, Path("t.jpg"), {"--strip-gps", size}).status, kSuccess);
    EXPECT_TRUE(Info(Path("t.jpg")).at("gps_latitude").is_null());
    EXPECT_EQ(Info(Path("t.jpg")).at("model"), "ILCE-7M3");
    EXPECT_EQ(Thumb(kRawSample, Path("t.jpg"), {"--no-exif", size}).status, kSuccess);
    EXPECT_TRUE(Info(Path("t.jpg")).at("model").is_null());
  }
}

TEST_F(ThumbTest, OnlyItsOwnFilesAreReplaced) {
  const std::string out = Path("t.jpg");
  EXPECT_EQ(Thumb(kRawSample, out).status, kSuccess);
  EXPECT_EQ(Thumb(kTower, out).status, kSuccess) << "a thumbnail of another photograph is its own, too";
  WriteFile(out, "last year's work");
  ExpectRefusal(Thumb(kTower, out), kFailure, "--overwrite");
  EXPECT_EQ(ReadFile(out), "last year's work");
  EXPECT_EQ(Thumb(kTower, out, {"--overwrite"}).status, kSuccess);
}

TEST_F(ThumbTest, OtherFormatsAreRefused) {
  const std::string in = Photograph("in.png");
  ExpectRefusal(Thumb(in, Path("t.png")), kUsage,
                "--output: '" + Path("t.png") + "' does not end in .jpg or .jpeg");
  EXPECT_FALSE(fs::exists(Path("t.png")));
}

}  // namespace
}  // namespace lumvik::test
