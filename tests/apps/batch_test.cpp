// `lumvik batch`: inputs, outputs, resuming and reports.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <opencv2/imgcodecs.hpp>
#include <thread>

#include "batch_fixture.h"
#include "exif_file.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr char kNoPhotograph[] = "' is neither a RAW file nor an image of a known format";

TEST_F(BatchTest, BrokenPhotographsFailAlone) {
  WritePhotographs();
  const ProcessResult result = Batch();
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(Outputs().size(), std::size_t{kPhotographs - kBroken});
  ExpectWholeOutputs();
  EXPECT_EQ(std::count(result.out.begin(), result.out.end(), '\n'), kPhotographs - kBroken);
  EXPECT_NE(result.out.find(Out("with space1.jpg") + " 60x40\n"), std::string::npos) << result.out;
  for (const std::string& failure :
       {"'" + In("plain0.ARW") + "' is neither a RAW file nor an image", "'" + In("-o16.jpg") + "' is empty",
        "'" + In("f\xC3\xBCnf \xE2\x9C\x93/{stem}29.png") + "' is damaged: "}) {
    EXPECT_NE(result.err.find("\nlumvik: " + failure), std::string::npos) << failure << '\n' << result.err;
  }
  EXPECT_NE(result.err.find("\nlumvik: 27 developed, 1 damaged and not developed, 2 failed ("),
            std::string::npos)
      << result.err;
}

TEST_F(BatchTest, OutputEqualsThatOfDevelop) {
  const std::string in = Photograph("photos/in.jpg");
  fs::copy_file(LUMVIK_SAMPLES "/sample_small.ARW", In("raw.ARW"));
  WriteFile(Path("look.json"), R"({"lumvik": 2, "contrast": 20, "flip_v": true, "tint": 5})");
  const std::vector<std::string> options = {
      "--settings", Path("look.json"), "--exposure",   "-0.5",
      "--hsl",      "red=10,5,0",      "--hsl",        "blue=-10,0,0",
      "--flip-h",   "--no-flip-v",     "--tone-curve", "0,0 0.3,0.4 1,1",
      "--crop",     "0.1,0.1,0.5,0.5", "--auto",       "--quality",
      "2",          "--jpeg-quality",  "70",           "--no-exif"};
  const ProcessResult result = Batch(options);
  EXPECT_EQ(result.status, kSuccess) << result.err;
  for (const char* name : {"in.jpg", "raw.ARW"}) {
    ASSERT_EQ(Develop(In(name), Path("expected.jpg"), options).status, kSuccess);
    EXPECT_TRUE(ReadFile(Out(fs::path(name).stem().string() + ".jpg")) == ReadFile(Path("expected.jpg")))
        << name;
  }
}

TEST_F(BatchTest, TheFormatAppliesToAllOutputs) {
  Photograph("photos/in.jpg");
  ASSERT_EQ(Batch({"--format", "png", "--bits", "16"}).status, kSuccess);
  ASSERT_EQ(Batch({"--format", "tiff"}).status, kSuccess);
  EXPECT_EQ(Outputs(), std::set<std::string>({"in.png", "in.tif"}));
  EXPECT_EQ(cv::imread(Out("in.png"), cv::IMREAD_UNCHANGED).depth(), CV_16U);
  ExpectRefusal(Batch({"--bits", "16"}), kUsage, "--bits: JPEG has 8 bits");
  ExpectRefusal(Batch({"--format", "gif"}), kUsage, "--format: 'gif' is not jpg, png or tiff");
}

TEST_F(BatchTest, OverlappingArgumentsAreDeduplicated) {
  fs::create_directories(In("deep/er"));
  for (const char* name : {"a1.jpg", "a2.jpg", "b.png", "deep/c.jpg", "deep/er/d.png"}) {
    Photograph(std::string("photos/") + name);
  }
  WriteFile(In("notes.txt"), "no photograph by its name");
  const auto outputs_of = [&](const std::vector<std::string>& inputs) {
    fs::remove_all(Out());
    std::vector<std::string> arguments = Command();
    arguments.insert(arguments.end(), {"batch", "-o", Out()});
    arguments.insert(arguments.end(), inputs.begin(), inputs.end());
    EXPECT_EQ(RunProcess(arguments).status, kSuccess);
    return Outputs();
  };
  using FileNames = std::set<std::string>;
  EXPECT_EQ(outputs_of({In("a*.jpg")}), FileNames({"a1.jpg", "a2.jpg"}));
  EXPECT_EQ(outputs_of({In("d*")}), FileNames({"c.jpg", "d.jpg"}));
  EXPECT_EQ(outputs_of({In("a1.jpg"), In("?1.jpg"), In("deep/../a1.jpg"), In("deep")}),
            FileNames({"a1.jpg", "c.jpg", "d.jpg"}));
  EXPECT_EQ(outputs_of({In()}), FileNames({"a1.jpg", "a2.jpg", "b.jpg", "c.jpg", "d.jpg"}));
}

TEST_F(BatchTest, AnExistingFileIsNotAPattern) {
  Photograph("photos/[a]*.jpg");
  Photograph("photos/a.jpg");
  std::vector<std::string> arguments = Command();
  arguments.insert(arguments.end(), {"batch", "-o", Out(), In("[a]*.jpg")});
  EXPECT_EQ(RunProcess(arguments).status, kSuccess);
  EXPECT_EQ(Outputs(), std::set<std::string>({"[a]*.jpg"}));
}

TEST_F(BatchTest, MissingArgumentsAreReportedAndTheRestIsDeveloped) {
  Photograph("photos/in.jpg");
  const ProcessResult result = Batch({Path("missing.jpg"), Path("none/*.jpg"), "--json"});
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(Outputs(), std::set<std::string>({"in.jpg"}));
  const std::string first = "cannot read '" + Path("missing.jpg") + "': there is no such file";
  const std::string second = "cannot read '" + Path("none/*.jpg") + "': there is no such file";
  EXPECT_NE(result.err.find("lumvik: " + first + "\nlumvik: " + second + "\n"), std::string::npos)
      << result.err;
  EXPECT_EQ(Json::parse(result.out).at("unreadable"), Json({first, second}));
}

TEST_F(BatchTest, AnEmptyFolderSucceeds) {
  const ProcessResult result = Batch();
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "lumvik: 0 developed (0.0 s)\n");
  EXPECT_FALSE(fs::exists(Out()));
}

TEST_F(BatchTest, JsonListsEveryPhotograph) {
  Photograph("photos/a.png");
  WriteFile(In("b \xE9.jpg"), "no photograph");
  Photograph("photos/c.png");
  ASSERT_EQ(Batch().status, kFailure);
  fs::remove(Out("c.jpg"));
  const ProcessResult result = Batch({"--json", "--resume", "--jobs", "1"});
  EXPECT_EQ(result.status, kFailure);
  Json json = Json::parse(result.out);
  EXPECT_GT(json.at("seconds"), 0);
  EXPECT_GT(json.at("photographs").at(2).at("seconds"), 0);
  json.erase("seconds");
  json.at("photographs").at(2).erase("seconds");
  const std::string bad = In("b \xEF\xBF\xBD.jpg");  // JSON is UTF-8
  const Json expected = {{"interrupted", false},
                         {"jobs", 1},
                         {"developed", 1},
                         {"skipped", 1},
                         {"damaged", 0},
                         {"failed", 1},
                         {"pending", 0},
                         {"developed_damaged", 0},
                         {"photographs",
                          {{{"input", In("a.png")},
                            {"output", Out("a.jpg")},
                            {"status", "skipped"},
                            {"reason", "already developed"}},
                           {{"input", bad},
                            {"output", Out("b \xEF\xBF\xBD.jpg")},
                            {"status", "failed"},
                            {"error", "'" + In("b ?.jpg") + kNoPhotograph}},
                           {{"input", In("c.png")},
                            {"output", Out("c.jpg")},
                            {"status", "developed"},
                            {"width", 60},
                            {"height", 40}}}},
                         {"unreadable", Json::array()}};
  EXPECT_EQ(json, expected) << json.dump(2);
}

TEST_F(BatchTest, InvalidSettingsAreRefusedUpFront) {
  Photograph("photos/in.jpg");
  WriteFile(Path("look.json"), R"({"lumvik": 2, "contrast": 200})");
  ExpectRefusal(Batch({"--settings", Path("look.json")}), kFailure,
                "contrast: 200 is not a number in -100..100");
  ExpectRefusal(Batch({"--contrast", "200"}), kUsage, "--contrast: '200' is not a number in -100..100");
  ExpectRefusal(RunProcess({LUMVIK_COMMAND, "batch", In()}), kUsage, "--output is required");
  EXPECT_FALSE(fs::exists(Out()));
}

// script(1) provides a terminal.
TEST_F(BatchTest, ProgressShowsRateAndRemainingTime) {
  Photograph("photos/a.png");
  Photograph("photos/b.png");
  const ProcessResult plain = Batch();
  EXPECT_NE(plain.err.find("\n2/2, "), std::string::npos) << plain.err;
  EXPECT_NE(plain.err.find("/s, 0:00 left\n"), std::string::npos) << plain.err;
  const std::string command =
      std::string("TERM=xterm '") + LUMVIK_COMMAND + "' batch '" + In() + "' -o '" + Out() + "'";
  const ProcessResult terminal = RunProcess({"script", "-q", "-e", "-c", command, "/dev/null"});
  EXPECT_EQ(terminal.status, kSuccess);
  EXPECT_NE(terminal.out.find("....] 0/2\r\x1B[K"), std::string::npos) << terminal.out;
  EXPECT_NE(terminal.out.find("####] 2/2, "), std::string::npos) << terminal.out;
  EXPECT_NE(terminal.out.find("\r\x1B[K" + Out("b.jpg") + " 60x40\r\n"), std::string::npos) << terminal.out;
}

// The processors a process may run on, as listed in /proc.
std::string ProcessorsOf(pid_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  const std::string key = "Cpus_allowed_list:\t";
  for (std::string line; std::getline(status, line);) {
    if (line.rfind(key, 0) == 0) return line.substr(key.size());
  }
  return {};
}

TEST_F(BatchTest, WorkersShareTheProcessors) {
  const unsigned processors = std::thread::hardware_concurrency();
  if (processors < 2) GTEST_SKIP() << "there is one processor, and nothing to share";
  const std::string a = SlowPhotograph("a.png");
  const std::string b = SlowPhotograph("b.png");
  RunningProcess batch(BatchCommand({"--jobs", "2", "--nr-luminance", "50"}));
  const std::string of_a = ProcessorsOf(AwaitWorker(batch.id(), a));
  const std::string of_b = ProcessorsOf(AwaitWorker(batch.id(), b));
  const ProcessResult result = batch.Wait();
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_NE(result.err.find("2 to develop, 2 at a time with " + std::to_string(processors / 2) + " of " +
                            std::to_string(processors) + " processors each; up to "),
            std::string::npos)
      << result.err;
  EXPECT_NE(of_a, of_b);
  EXPECT_NE(of_a, ProcessorsOf(getpid()));
  EXPECT_NE(of_b, ProcessorsOf(getpid()));
}

TEST_F(BatchTest, JobsLimitTheWorkers) {
  for (const char* name : {"a", "b", "c"}) Photograph(std::string("photos/") + name + ".png");
  EXPECT_NE(Batch({"--jobs", "1"}).err.find("3 to develop, 1 at a time"), std::string::npos);
  EXPECT_NE(Batch({"--jobs", "200"}).err.find("3 to develop, 3 at a time"), std::string::npos);
  EXPECT_EQ(Outputs().size(), 3U);
  ExpectRefusal(Batch({"--jobs", "0"}), kUsage, "--jobs: '0' is not a whole number in 1..256");
}

}  // namespace
}  // namespace lumvik::test
