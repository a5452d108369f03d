// `lumvik hash`: one line per file, also when others fail.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"
#include "lumvik.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class HashTest : public CommandTest {
 protected:
  static ProcessResult Hash(const std::vector<std::string>& files) {
    std::vector<std::string> arguments = Command();
    arguments.emplace_back("hash");
    arguments.insert(arguments.end(), files.begin(), files.end());
    return RunProcess(arguments);
  }

  // The expected line for a file.
  static std::string Line(const std::string& file) {
    std::uint64_t hash = 0;
    EXPECT_EQ(lumvik_phash(file.c_str(), &hash), 0) << file;
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(hash));
    return digits + ("  " + file) + "\n";
  }
};

TEST_F(HashTest, PrintsOneLinePerFile) {
  const std::vector<std::string> files = {LUMVIK_SAMPLES "/sample_small.ARW", LUMVIK_TEST_DATA "/cat.jpg",
                                          Photograph("\xC3\xA9t\xC3\xA9.png")};
  const ProcessResult result = Hash(files);
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, Line(files[0]) + Line(files[1]) + Line(files[2]));
  EXPECT_EQ(result.err, "");
}

TEST_F(HashTest, KeepsLeadingZeros) {
  const std::string black = Path("black.png");
  ASSERT_TRUE(cv::imwrite(black, cv::Mat(32, 32, CV_8UC1, cv::Scalar(0))));
  EXPECT_EQ(Hash({black}).out, "0000000000000000  " + black + "\n");
}

TEST_F(HashTest, AFailureDoesNotStopTheRest) {
  const std::string good = Photograph("good.png");
  WriteFile(Path("text.jpg"), "not a photograph at all\n");
  const std::string pipe = MakePipe(Path("pipe.jpg"));
  const std::vector<std::string> files = {Path("missing.jpg"),
                                          good,
                                          Path("text.jpg"),
                                          pipe,
                                          LUMVIK_TEST_DATA "/no_thumb.dng",
                                          fs::path(good).parent_path().string(),
                                          good};
  const ProcessResult result = Hash(files);
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(result.out, Line(good) + Line(good));
  const auto line = [](const std::string& file, const std::string& reason) {
    return "lumvik: cannot read '" + file + "': " + reason + "\n";
  };
  EXPECT_EQ(result.err, line(files[0], "there is no such file") + "lumvik: '" + files[2] +
                            "' is neither a RAW file nor an image of a known format\n" +
                            line(files[3], "it is not a regular file") +
                            line(files[4], "the RAW file has no preview") + line(files[5], "it is a folder"));
}

TEST_F(HashTest, JsonHasTheSameHashes) {
  const std::string photograph = LUMVIK_TEST_DATA "/cat.jpg";
  const nlohmann::json json = nlohmann::json::parse(Hash({"--json", photograph}).out);
  ASSERT_EQ(json.size(), 1U);
  EXPECT_EQ(json.at(0).at("path"), photograph);
  EXPECT_EQ(json.at(0).at("hash").get<std::string>() + "  " + photograph + "\n", Line(photograph));
}

TEST_F(HashTest, AFileIsRequired) {
  ExpectRefusal(Hash({}), kUsage, "FILE is required");
}

}  // namespace
}  // namespace lumvik::test
