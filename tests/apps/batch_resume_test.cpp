// `lumvik batch --resume`: outputs are known by their marks.
#include <chrono>
#include <filesystem>

#include "batch_fixture.h"
#include "exif_file.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class BatchResumeTest : public BatchTest {
 protected:
  Json Report(std::vector<std::string> options = {}) const {
    options.insert(options.end(), {"--resume", "--json"});
    return Json::parse(Batch(options).out);
  }

  // The state of each photograph.
  std::vector<std::string> States(const std::vector<std::string>& options = {}) const {
    std::vector<std::string> states;
    const Json report = Report(options);
    for (const Json& photograph : report.at("photographs")) states.push_back(photograph.at("status"));
    return states;
  }

  using StateList = std::vector<std::string>;
};

TEST_F(BatchResumeTest, MissingOutputsAreDeveloped) {
  for (const char* name : {"a", "b", "c"}) Photograph(std::string("photos/") + name + ".png");
  EXPECT_EQ(States(), StateList(3, "developed"));
  fs::remove(Out("b.jpg"));
  const auto time = fs::last_write_time(Out("a.jpg"));
  EXPECT_EQ(States(), StateList({"skipped", "developed", "skipped"}));
  EXPECT_EQ(fs::last_write_time(Out("a.jpg")), time);
  EXPECT_EQ(Report().at("photographs").at(0).at("reason"), "already developed");
}

TEST_F(BatchResumeTest, TimesDoNotMatter) {
  const std::string in = Photograph("photos/a.png");
  ASSERT_EQ(States(), StateList({"developed"}));
  fs::last_write_time(in, fs::file_time_type::clock::now() + std::chrono::hours(1));
  fs::last_write_time(Out("a.jpg"), fs::last_write_time(in) - std::chrono::hours(9));
  EXPECT_EQ(States(), StateList({"skipped"}));
}

TEST_F(BatchResumeTest, OtherSettingsAreDevelopedAgain) {
  Photograph("photos/a.png");
  WriteFile(Path("look.json"), R"({"lumvik": 2, "contrast": 10})");
  std::vector<std::string> options = {"--settings", Path("look.json")};
  EXPECT_EQ(States(options), StateList({"developed"}));
  EXPECT_EQ(States(options), StateList({"skipped"}));
  EXPECT_EQ(States({"--contrast", "10"}), StateList({"skipped"}));
  WriteFile(Path("look.json"), R"({"lumvik": 2, "contrast": 20})");
  EXPECT_EQ(States(options), StateList({"developed"}));
  EXPECT_EQ(States(options), StateList({"skipped"}));
  EXPECT_EQ(States({"--contrast", "20", "--jpeg-quality", "80"}), StateList({"developed"}));
  EXPECT_EQ(States({"--contrast", "20", "--no-exif", "--jpeg-quality", "80"}), StateList({"developed"}));
  EXPECT_EQ(States({"--contrast", "20", "--no-exif", "--jpeg-quality", "80"}), StateList({"skipped"}));
}

TEST_F(BatchResumeTest, ChangedSidecarsAreDevelopedAgain) {
  Photograph("photos/a.png");
  Photograph("photos/b 1.png");
  WriteFile(In("b 1.png.lumvik.json"), R"({"lumvik": 2, "crop": {"x": 0, "y": 0, "w": 0.5, "h": 0.5}})");
  const Json first = Report().at("photographs");
  EXPECT_EQ(first.at(0).at("width"), 60);
  EXPECT_EQ(first.at(1).at("width"), 30);
  EXPECT_EQ(first.at(1).at("height"), 20);
  EXPECT_EQ(States(), StateList({"skipped", "skipped"}));
  WriteFile(In("b 1.png.lumvik.json"), R"({"lumvik": 2, "crop": {"x": 0, "y": 0, "w": 0.5, "h": 1}})");
  EXPECT_EQ(States(), StateList({"skipped", "developed"}));
  EXPECT_EQ(Report({"--no-sidecar"}).at("photographs").at(1).at("width"), 60);
}

TEST_F(BatchResumeTest, ChangedOutputsAreKept) {
  for (const char* name : {"a", "b", "c"}) Photograph(std::string("photos/") + name + ".png");
  ASSERT_EQ(States(), StateList(3, "developed"));
  fs::resize_file(Out("b.jpg"), fs::file_size(Out("b.jpg")) / 2);
  fs::remove(Out("c.jpg"));
  Photograph("developed/c.jpg");
  const std::string b = ReadFile(Out("b.jpg"));
  const std::string c = ReadFile(Out("c.jpg"));
  EXPECT_EQ(States(), StateList({"skipped", "failed", "failed"}));
  EXPECT_EQ(ReadFile(Out("b.jpg")), b);
  EXPECT_EQ(ReadFile(Out("c.jpg")), c);
  EXPECT_EQ(States({"--overwrite"}), StateList({"skipped", "developed", "developed"}));
  ExpectWholeOutputs();
  EXPECT_EQ(States(), StateList(3, "skipped"));
}

TEST_F(BatchResumeTest, ATiffWithInlineMetadataIsKnown) {
  Exiv2::ExifData exif;
  exif["Exif.Image.Make"] = "DJI";
  WriteExif(Photograph("photos/a.jpg"), exif);
  ASSERT_EQ(States({"--format", "tiff"}), StateList({"developed"}));
  EXPECT_EQ(States({"--format", "tiff"}), StateList({"skipped"}));
}

TEST_F(BatchResumeTest, NumbersAreKept) {
  const std::vector<std::string> options = {"--name", "{n}-x{n}5.{ext}"};
  const auto picture = [&](const std::string& name, int value) {
    ASSERT_TRUE(cv::imwrite(In(name), cv::Mat(8, 8, CV_8UC3, cv::Scalar(value, value, value))));
  };
  picture("c.png", 10);
  picture("e.png", 20);
  picture("g.png", 30);
  ASSERT_EQ(States(options), StateList(3, "developed"));
  const std::string c = ReadFile(Out("1-x15.jpg"));
  const std::string g = ReadFile(Out("3-x35.jpg"));
  fs::remove(Out("2-x25.jpg"));
  picture("a.png", 40);
  picture("f.png", 50);
  std::vector<std::string> outputs;
  const Json report = Report(options);
  for (const Json& photograph : report.at("photographs")) {
    outputs.push_back(fs::path(photograph.at("output").get<std::string>()).filename());
  }
  EXPECT_EQ(outputs,
            std::vector<std::string>({"2-x25.jpg", "1-x15.jpg", "4-x45.jpg", "5-x55.jpg", "3-x35.jpg"}));
  EXPECT_EQ(report.at("skipped"), 2);
  EXPECT_EQ(ReadFile(Out("1-x15.jpg")), c);
  EXPECT_EQ(ReadFile(Out("3-x35.jpg")), g);
  EXPECT_EQ(States(options), StateList(5, "skipped"));
}

}  // namespace
}  // namespace lumvik::test
