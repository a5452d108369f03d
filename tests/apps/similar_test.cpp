// `lumvik similar`: grouping of photographs and traversal of folders.
#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <sstream>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using PathGroups = std::vector<std::vector<std::string>>;

const std::string kData = LUMVIK_TEST_DATA "/";

class SimilarTest : public CommandTest {
 protected:
  std::string Folder() const { return Path("photos"); }
  std::string In(const std::string& name) const { return Path("photos/" + name); }

  SimilarTest() { fs::create_directories(In("export")); }

  ProcessResult Similar(const std::vector<std::string>& options = {},
                        std::vector<std::string> command = Command()) const {
    command.insert(command.end(), {"similar", Folder()});
    command.insert(command.end(), options.begin(), options.end());
    return RunProcess(command);
  }

  void Copy(const std::string& from, const std::string& name) const { fs::copy_file(from, In(name)); }

  // Scales and recompresses an image.
  void Recompress(const std::string& from, const std::string& name, double scale, int quality) const {
    cv::Mat picture;
    cv::resize(cv::imread(from), picture, cv::Size(), scale, scale, cv::INTER_AREA);
    ASSERT_TRUE(cv::imwrite(In(name), picture, {cv::IMWRITE_JPEG_QUALITY, quality}));
  }

  // The groups, with paths relative to the folder.
  PathGroups GroupsOf(const ProcessResult& result) const {
    PathGroups groups;
    const Json json = Json::parse(result.out);
    for (const Json& members : json.at("groups")) {
      std::vector<std::string>& group = groups.emplace_back();
      for (const Json& member : members) {
        const fs::path path = fs::u8path(member.at("path").get<std::string>().substr(Folder().size() + 1));
        group.push_back(path.generic_string());
      }
    }
    return groups;
  }
};

TEST_F(SimilarTest, RawFilesAreGroupedWithTheirExports) {
  Copy(LUMVIK_SAMPLES "/sample_small.ARW", "a.ARW");
  Copy(kData + "uncompressed.ARW", "b.arw");
  Copy(kData + "jpeg_thumb.dng", "c.DNG");
  Copy(kData + "cat.jpg", "cat.jpg");
  Copy(kData + "eiffel_gps_north_east.jpg", "eiffel.jpg");
  Copy(kData + "tower_orientation8.jpg", "tower.jpg");
  for (const char* name : {"a.ARW", "b.arw", "c.DNG", "tower.jpg"}) {
    const std::string developed = Path("developed.png");
    ASSERT_EQ(Develop(In(name), developed).status, kSuccess);
    Recompress(developed, std::string("export/") + name[0] + "-half.jpg", 0.5, 60);
    Recompress(developed, std::string("export/") + name[0] + "-third.jpg", 0.33, 85);
  }
  Recompress(In("cat.jpg"), "cat small.JPG", 0.2, 40);
  const ProcessResult result = Similar({"--json"});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(GroupsOf(result), PathGroups({{"a.ARW", "export/a-half.jpg", "export/a-third.jpg"},
                                          {"b.arw", "export/b-half.jpg", "export/b-third.jpg"},
                                          {"c.DNG", "export/c-half.jpg", "export/c-third.jpg"},
                                          {"cat small.JPG", "cat.jpg"},
                                          {"export/t-half.jpg", "export/t-third.jpg", "tower.jpg"}}));
  EXPECT_EQ(Json::parse(result.out).at("threshold"), 8);
}

TEST_F(SimilarTest, LinesEqualThoseOfHash) {
  Copy(kData + "cat.jpg", "a.jpg");
  Copy(kData + "cat.jpg", "b.jpg");
  Copy(kData + "eiffel_gps_north_east.jpg", "x.jpg");
  Copy(kData + "eiffel_gps_north_east.jpg", "y.jpg");
  const auto lines = [](const std::vector<std::string>& files) {
    std::vector<std::string> arguments = Command();
    arguments.emplace_back("hash");
    arguments.insert(arguments.end(), files.begin(), files.end());
    return RunProcess(arguments).out;
  };
  EXPECT_EQ(Similar().out, lines({In("a.jpg"), In("b.jpg")}) + "\n" + lines({In("x.jpg"), In("y.jpg")}));
}

TEST_F(SimilarTest, TheThresholdIsApplied) {
  Copy(kData + "cat.jpg", "cat.jpg");
  Copy(kData + "eiffel_gps_north_east.jpg", "eiffel.jpg");
  EXPECT_EQ(Similar().out, "");
  EXPECT_EQ(GroupsOf(Similar({"--json", "--threshold", "64"})), PathGroups({{"cat.jpg", "eiffel.jpg"}}));
  Recompress(In("cat.jpg"), "tiny.jpg", 0.02, 10);
  EXPECT_EQ(GroupsOf(Similar({"--json"})), PathGroups({{"cat.jpg", "tiny.jpg"}}));
  EXPECT_EQ(GroupsOf(Similar({"--json", "--threshold", "0"})), PathGroups());
}

TEST_F(SimilarTest, AFailingFileDoesNotStopTheRest) {
  Copy(kData + "cat.jpg", "a.jpg");
  Copy(kData + "cat.jpg", "z.jpg");
  WriteFile(In("text.jpg"), "not a photograph at all\n");
  Copy(kData + "no_thumb.dng", "export/no.dng");
  const ProcessResult result = Similar({"--json"});
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(GroupsOf(result), PathGroups({{"a.jpg", "z.jpg"}}));
  EXPECT_EQ(result.err, "lumvik: cannot read '" + In("export/no.dng") +
                            "': the RAW file has no preview\nlumvik: '" + In("text.jpg") +
                            "' is neither a RAW file nor an image of a known format\n");
}

TEST_F(SimilarTest, AnUnreadableFolderDoesNotStopTheRest) {
  Copy(kData + "cat.jpg", "a.jpg");
  Copy(kData + "cat.jpg", "z.jpg");
  fs::permissions(In("export"), fs::perms::none);
  const ProcessResult result = Similar({"--json"}, UnprivilegedCommand());
  fs::permissions(In("export"), fs::perms::owner_all);
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(GroupsOf(result), PathGroups({{"a.jpg", "z.jpg"}}));
  EXPECT_EQ(result.err, "lumvik: cannot read '" + In("export") + "': Permission denied\n");
}

TEST_F(SimilarTest, LinksAndPipesAreSkipped) {
  Copy(kData + "cat.jpg", "a.jpg");
  fs::create_symlink("a.jpg", In("link.jpg"));
  fs::create_symlink("nowhere", In("dangling.jpg"));
  fs::create_directory_symlink("..", In("export/loop"));
  fs::create_directory_symlink("export", In("other"));
  MakePipe(In("pipe.jpg"));
  fs::create_directory(In("folder.jpg"));
  const ProcessResult result = Similar({"--json"});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(GroupsOf(result), PathGroups());
  EXPECT_EQ(result.err, "");
}

TEST_F(SimilarTest, TheFolderItselfCanBeALink) {
  Copy(kData + "cat.jpg", "a.jpg");
  Copy(kData + "cat.jpg", "b.jpg");
  fs::rename(Folder(), Path("elsewhere"));
  fs::create_directory_symlink("elsewhere", Folder());
  EXPECT_EQ(GroupsOf(Similar({"--json"})), PathGroups({{"a.jpg", "b.jpg"}}));
}

TEST_F(SimilarTest, OnlyPhotographsAreRead) {
  Copy(kData + "cat.jpg", "a.jpg");
  for (const char* name : {"notes.txt", "a.jpg.xmp", "jpg", ".jpg", "a"}) WriteFile(In(name), "text");
  const ProcessResult result = Similar();
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, "");
}

TEST_F(SimilarTest, HiddenFilesAndFoldersOfSystemsAreSkipped) {
  for (const char* folder : {"@eaDir", ".Trashes", "Old.lrdata"}) {
    fs::create_directory(In(folder));
    Copy(kData + "cat.jpg", std::string(folder) + "/cat.jpg");
  }
  for (const char* name : {"a.jpg", "b.jpg", "._a.jpg"}) Copy(kData + "cat.jpg", name);
  EXPECT_EQ(GroupsOf(Similar({"--json"})), PathGroups({{"a.jpg", "b.jpg"}}));
}

TEST_F(SimilarTest, NamesCanBeAnyBytes) {
  Copy(kData + "cat.jpg", "\xC3\xA9t\xC3\xA9.jpg");
  Copy(kData + "cat.jpg", "\xE9t\xE9.jpg");  // not UTF-8
  const std::string text = Similar().out;
  EXPECT_NE(text.find("  " + In("\xC3\xA9t\xC3\xA9.jpg") + "\n"), std::string::npos);
  EXPECT_NE(text.find("  " + In("\xE9t\xE9.jpg") + "\n"), std::string::npos);
  EXPECT_EQ(GroupsOf(Similar({"--json"})),
            PathGroups({{"\xC3\xA9t\xC3\xA9.jpg", "\xEF\xBF\xBDt\xEF\xBF\xBD.jpg"}}));
}

TEST_F(SimilarTest, TheResultDoesNotDependOnTheThreads) {
  const std::string picture = Photograph("picture.png");
  for (int i = 0; i < 3000; ++i) {
    const std::string folder = In("export/" + std::to_string(i % 7));
    fs::create_directories(folder);
    if (i % 100 == 0) WriteFile(folder + "/bad" + std::to_string(i) + ".jpg", "text");
    fs::copy_file(picture, folder + "/" + std::to_string(i) + ".png");
  }
  Copy(kData + "cat.jpg", "cat.jpg");
  const ProcessResult one = Similar({"--jobs", "1"});
  EXPECT_EQ(one.status, kFailure);
  EXPECT_EQ(std::count(one.out.begin(), one.out.end(), '\n'), 3000);
  EXPECT_EQ(std::count(one.err.begin(), one.err.end(), '\n'), 30);
  for (const char* jobs : {"2", "16"}) {
    const ProcessResult several = Similar({"--jobs", jobs});
    EXPECT_TRUE(several.out == one.out) << jobs;
    EXPECT_TRUE(several.err == one.err) << jobs;
  }
}

// A limit on address space allows stacks for two more threads, or for none. It is halfway between two and
// three: close to either, the libraries would run out of memory at random.
TEST_F(SimilarTest, ContinuesWithFewerThreads) {
#if defined(LUMVIK_SANITIZE_ADDRESS) || defined(LUMVIK_SANITIZE_THREAD)
  GTEST_SKIP() << "the sanitizer itself needs more address space than the limit leaves";
#endif
  for (int i = 0; i < 20; ++i) Copy(kData + "cat.jpg", std::to_string(10 + i) + ".jpg");
  const std::string expected = Similar().out;
  for (const char* stack_kilobytes : {"800000", "8000000"}) {
    const std::string limits =
        std::string("ulimit -s ") + stack_kilobytes + " && ulimit -v 2200000 || exit 99";
    const ProcessResult result =
        Similar({"--jobs", "8"}, {"sh", "-c", limits + "; exec \"$0\" \"$@\"", LUMVIK_COMMAND});
    if (result.status == 99) GTEST_SKIP() << "limits cannot be set here";
    EXPECT_EQ(result.status, kSuccess) << result.err;
    EXPECT_EQ(result.out, expected) << stack_kilobytes;
  }
}

// script(1) provides a terminal.
TEST_F(SimilarTest, ATerminalShowsProgress) {
  Copy(kData + "cat.jpg", "a.jpg");
  Copy(kData + "cat.jpg", "b.jpg");
  const std::string command =
      std::string("TERM=xterm '") + LUMVIK_COMMAND + "' similar '" + Folder() + "' > /dev/null";
  const ProcessResult result = RunProcess({"script", "-q", "-e", "-c", command, "/dev/null"});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_NE(result.out.find("] 2/2"), std::string::npos) << result.out;
  EXPECT_EQ(result.out.substr(result.out.size() - 4), "\r\x1B[K") << "the bar is left behind";
}

TEST_F(SimilarTest, ProgressFitsTheTerminal) {
  for (int i = 0; i < 3; ++i) Copy(kData + "cat.jpg", std::to_string(i) + ".jpg");
  const auto progress = [&](const std::string& columns) {
    const std::string command = "stty cols " + columns + "; TERM=xterm '" + std::string(LUMVIK_COMMAND) +
                                "' similar '" + Folder() + "' > /dev/null";
    return RunProcess({"script", "-q", "-e", "-c", command, "/dev/null"}).out;
  };
  std::istringstream redrawn(progress("40"));
  for (std::string line; std::getline(redrawn, line, '\r');) {
    EXPECT_LT(line.size(), 40 + std::string("\x1B[K").size()) << line;
  }
  EXPECT_NE(progress("40").find('['), std::string::npos);
  EXPECT_EQ(progress("12").find('#'), std::string::npos) << "there is no room for a bar";
  EXPECT_EQ(progress("1").find('#'), std::string::npos);
}

TEST_F(SimilarTest, ADumbTerminalShowsNoProgress) {
  Copy(kData + "cat.jpg", "a.jpg");
  const std::string command =
      "TERM=dumb '" + std::string(LUMVIK_COMMAND) + "' similar '" + Folder() + "' > /dev/null";
  EXPECT_EQ(RunProcess({"script", "-q", "-e", "-c", command, "/dev/null"}).out, "");
}

TEST_F(SimilarTest, AnEmptyFolderHasNoGroups) {
  EXPECT_EQ(Similar().out, "");
  EXPECT_EQ(GroupsOf(Similar({"--json"})), PathGroups());
}

TEST_F(SimilarTest, AnArgumentThatIsNotAFolderIsRefused) {
  fs::remove_all(Folder());
  ExpectRefusal(Similar(), kFailure, "cannot read '" + Folder() + "': No such file or directory");
  WriteFile(Folder(), "a file");
  ExpectRefusal(Similar(), kFailure, "cannot read '" + Folder() + "': Not a directory");
}

TEST_F(SimilarTest, NumbersAreChecked) {
  ExpectRefusal(Similar({"--threshold", "65"}), kUsage, "--threshold: '65' is not a whole number in 0..64");
  ExpectRefusal(Similar({"--threshold", "-1"}), kUsage, "--threshold: '-1' is not a whole number in 0..64");
  ExpectRefusal(Similar({"--jobs", "0"}), kUsage, "--jobs: '0' is not a whole number in 1..256");
  ExpectRefusal(Similar({"--jobs", "-1"}), kUsage, "--jobs: '-1' is not a whole number in 1..256");
}

}  // namespace
}  // namespace lumvik::test
