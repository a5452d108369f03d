// Output names of `lumvik batch`, and names that are refused up front.
#include <filesystem>

#include "batch_fixture.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

class BatchNamesTest : public BatchTest {
 protected:
  void ExpectNames(const std::string& pattern, const Names& names) const {
    fs::remove_all(Out());
    const ProcessResult result = Batch({"--name", pattern});
    EXPECT_EQ(result.status, kSuccess) << result.err;
    EXPECT_EQ(Outputs(), names) << pattern;
  }

  void ExpectRefusedPattern(const std::string& pattern, const std::string& reason) const {
    ExpectRefusal(Batch({"--name", pattern}), kUsage, "--name: '" + pattern + "' " + reason);
  }
};

TEST_F(BatchNamesTest, FieldsAreReplaced) {
  fs::create_directories(In("b c/d"));
  for (const char* name : {"a.x.png", "b c/e.png", "b c/d/\xC3\xA9.png"}) {
    Photograph(std::string("photos/") + name);
  }
  ExpectNames("{stem}.{ext}", {"a.x.jpg", "e.jpg", "\xC3\xA9.jpg"});
  ExpectNames("{stem}_{n}.jpeg", {"a.x_1.jpeg", "\xC3\xA9_2.jpeg", "e_3.jpeg"});
  ExpectNames("{folder}/{n}.JPG", {"photos/1.JPG", "photos/b c/d/2.JPG", "photos/b c/3.JPG"});
}

TEST_F(BatchNamesTest, NumbersAreZeroPadded) {
  for (int i = 10; i < 20; ++i) Photograph("photos/" + std::to_string(i) + ".png");
  ExpectNames("x{n}.{ext}", {"x01.jpg", "x02.jpg", "x03.jpg", "x04.jpg", "x05.jpg", "x06.jpg", "x07.jpg",
                             "x08.jpg", "x09.jpg", "x10.jpg"});
}

TEST_F(BatchNamesTest, TheFolderOfAFileArgumentIsItsParent) {
  Photograph("photos/a.png");
  std::vector<std::string> arguments = Command();
  arguments.insert(arguments.end(), {"batch", In("a.png"), "-o", Out(), "--name", "{folder}_{stem}.{ext}"});
  EXPECT_EQ(RunProcess(arguments).status, kSuccess);
  EXPECT_EQ(Outputs(), Names({"photos_a.jpg"}));
}

TEST_F(BatchNamesTest, InvalidPatternsAreUsageErrors) {
  Photograph("photos/a.png");
  const std::string brace = "has a brace that is not part of {stem}, {n}, {ext} or {folder}";
  ExpectRefusedPattern("{name}.{ext}", brace);
  ExpectRefusedPattern("{stem.{ext}", brace);
  ExpectRefusedPattern("stem}.{ext}", brace);
  ExpectRefusedPattern("{stem", brace);
  ExpectRefusedPattern("../{stem}.{ext}", "leads out of the output folder");
  ExpectRefusedPattern("/tmp/{stem}.{ext}", "leads out of the output folder");
  ExpectRefusedPattern("{stem}.png", "does not end in an extension of the format");
  ExpectRefusedPattern("{stem}", "does not end in an extension of the format");
  ExpectRefusedPattern("", "does not end in an extension of the format");
  EXPECT_FALSE(fs::exists(Out()));
}

TEST_F(BatchNamesTest, CollidingNamesAreRefusedUpFront) {
  fs::create_directory(In("more"));
  for (const char* name : {"a.png", "b.png", "more/b.jpg"}) Photograph(std::string("photos/") + name);
  ExpectRefusal(
      Batch(), kFailure,
      "'" + In("b.png") + "' and '" + In("more/b.jpg") + "' would both be written to '" + Out("b.jpg") + "'");
  EXPECT_FALSE(fs::exists(Out()));
  EXPECT_EQ(Batch({"--name", "{folder}/{stem}.{ext}"}).status, kSuccess);
  EXPECT_EQ(Outputs(), Names({"photos/a.jpg", "photos/b.jpg", "photos/more/b.jpg"}));
}

TEST_F(BatchNamesTest, InputsAreNeverOverwritten) {
  const std::string before = ReadFile(Photograph("photos/1.jpg"));
  Photograph("photos/a.png");
  fs::create_directory_symlink(In(), Path("link"));
  for (const std::string& folder : {In(), Path("link"), In("../photos")}) {
    for (const char* pattern : {"{stem}.{ext}", "{n}.{ext}"}) {
      const ProcessResult result =
          RunProcess({LUMVIK_COMMAND, "batch", In(), "-o", folder, "--name", pattern});
      ExpectRefusal(result, kFailure, "it is one of the input photographs");
    }
  }
  EXPECT_EQ(ReadFile(In("1.jpg")), before);
  EXPECT_FALSE(fs::exists(In("a.jpg")));
}

TEST_F(BatchNamesTest, TheOutputFolderIsNotSearched) {
  Photograph("photos/a.png");
  for (int i = 0; i < 2; ++i) {
    const ProcessResult result =
        RunProcess({LUMVIK_COMMAND, "batch", In(), "-o", In("out"), "--name", "x.{ext}"});
    EXPECT_EQ(result.status, kSuccess) << result.err;
    EXPECT_EQ(result.out, In("out/x.jpg") + " 60x40\n");
  }
}

}  // namespace
}  // namespace lumvik::test
