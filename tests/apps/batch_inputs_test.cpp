// What `lumvik batch` takes for photographs.
#include <filesystem>

#include "batch/listed_files.h"
#include "batch/shard.h"
#include "batch_fixture.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;
using Names = std::set<std::string>;

class BatchInputsTest : public BatchTest {
 protected:
  // Runs `lumvik batch` with these arguments and returns the names of the outputs that it wrote.
  Names Written(const std::vector<std::string>& arguments, const std::string& folder) const {
    std::vector<std::string> command = {LUMVIK_COMMAND, "batch", "-o", folder, "--json"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    const ProcessResult result = RunProcess(command);
    EXPECT_EQ(result.status, kSuccess) << result.err;
    Names names;
    const Json report = Json::parse(result.out);
    for (const Json& photograph : report.at("photographs")) {
      if (photograph.at("status") != "developed") continue;
      names.insert(fs::path(photograph.at("output").get<std::string>()).lexically_relative(folder));
    }
    return names;
  }
};

TEST_F(BatchInputsTest, FilesOfSystemsAreNoPhotographs) {
  for (const char* folder :
       {"@eaDir/a.jpg", "#recycle", "$RECYCLE.BIN", "System Volume Information", "__MACOSX", "lost+found",
        "CaptureOne/Cache", "Old.lrdata", "My.cocatalog", ".Trashes", ".lumvik"}) {
    fs::create_directories(In(folder));
    Photograph(std::string("photos/") + folder + "/x.jpg");
  }
  for (const char* name : {"a.jpg", "._a.jpg", ".hidden.png", "sub.lrdata.jpg"}) {
    Photograph(std::string("photos/") + name);
  }
  EXPECT_EQ(Written({In()}, Out()), Names({"a.jpg", "sub.lrdata.jpg"}));
  fs::remove_all(Out());
  EXPECT_EQ(Written({In("*"), In(".*")}, Out()), Names({"a.jpg", "sub.lrdata.jpg"}));
  fs::remove_all(In(".lumvik"));
}

TEST_F(BatchInputsTest, NamedFilesAndFoldersAreTaken) {
  fs::create_directories(In("@eaDir"));
  fs::create_directories(In(".kept"));
  Photograph("photos/@eaDir/x.jpg");
  Photograph("photos/.kept/y.jpg");
  Photograph("photos/.z.jpg");
  EXPECT_EQ(Written({In("@eaDir/x.jpg"), In(".kept"), In(".z.jpg")}, Out()),
            Names({"x.jpg", "y.jpg", ".z.jpg"}));
}

TEST_F(BatchInputsTest, ADashIsTheNameOfAFile) {
  fs::rename(Photograph("photos/a.png"), In("-"));
  const ProcessResult result =
      RunProcess({"sh", "-c", "cd \"" + In() + "\" && \"$0\" batch -o ../developed -- -", LUMVIK_COMMAND});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(Outputs(), Names({"-.jpg"}));
}

TEST_F(BatchInputsTest, TheOutputFolderMayBeTheInputFolder) {
  Photograph("photos/a.png");
  fs::create_directory(In("sub"));
  Photograph("photos/sub/b.png");
  EXPECT_EQ(Written({In(), "--name", "{stem}-{source_ext}.{ext}"}, In()), Names({"a-png.jpg", "b-png.jpg"}));
  Photograph("photos/c.png");
  EXPECT_EQ(Written({In(), "--resume", "--name", "{stem}-{source_ext}.{ext}"}, In()), Names({"c-png.jpg"}));
  EXPECT_EQ(Written({In("*"), "--format", "png", "--name", "{stem}-{source_ext}.{ext}"}, In()),
            Names({"a-png.png", "b-png.png", "c-png.png"}));
}

TEST_F(BatchInputsTest, OtherPhotographsInTheOutputFolderAreTaken) {
  fs::create_directory(In("out"));
  Photograph("photos/a.png");
  Photograph("photos/out/b.png");
  for (int i = 0; i < 2; ++i) EXPECT_EQ(Written({In()}, In("out")), Names({"a.jpg", "b.jpg"}));
}

TEST_F(BatchInputsTest, NamedOutputsAreReportedAsSkipped) {
  Photograph("photos/a.png");
  ASSERT_EQ(Written({In()}, In()), Names({"a.jpg"}));
  const ProcessResult result =
      RunProcess({LUMVIK_COMMAND, "batch", In("a.png"), In("a.jpg"), "-o", In(), "--json"});
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_NE(result.err.find("lumvik: skipped '" + In("a.jpg") + "': it is an output of this command\n"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(
      Json::parse(result.out).at("photographs").at(1),
      Json({{"input", In("a.jpg")}, {"status", "skipped"}, {"reason", "it is an output of this command"}}));
}

TEST_F(BatchInputsTest, OutputsInAnotherFolderArePhotographs) {
  Photograph("photos/a.png");
  ASSERT_EQ(Written({In()}, Path("web")), Names({"a.jpg"}));
  EXPECT_EQ(Written({Path("web")}, Out()), Names({"a.jpg"}));
}

TEST_F(BatchInputsTest, FilesAreListed) {
  for (const char* name : {"a", "b c", "*", "d"}) Photograph(std::string("photos/") + name + ".png");
  fs::create_directory(In("sub"));
  Photograph("photos/sub/e.png");
  WriteFile(Path("lines"), In("a.png") + "\n\n" + In("*.png") + "\r\n" + In("sub"));
  EXPECT_EQ(Written({"--files-from", Path("lines")}, Out()), Names({"a.jpg", "*.jpg", "e.jpg"}));
  WriteFile(Path("nul"), In("b c.png") + '\0' + In("a.png") + '\0');
  const ProcessResult piped =
      RunProcess({"sh", "-c", "\"$0\" \"$@\" < \"" + Path("nul") + "\"", LUMVIK_COMMAND, "batch", In("d.png"),
                  "--files-from", "-", "-o", Path("piped")});
  EXPECT_EQ(piped.status, kSuccess) << piped.err;
  Names piped_names;
  for (const auto& entry : fs::directory_iterator(Path("piped"))) piped_names.insert(entry.path().filename());
  EXPECT_EQ(piped_names, Names({"a.jpg", "b c.jpg", "d.jpg"}));
}

TEST_F(BatchInputsTest, MissingListsAndFiles) {
  WriteFile(Path("list"), In("none*.png") + "\n");
  const ProcessResult missing =
      RunProcess({LUMVIK_COMMAND, "batch", "--files-from", Path("list"), "-o", Out()});
  EXPECT_EQ(missing.status, kFailure);
  EXPECT_EQ(missing.err.rfind("lumvik: cannot read '" + In("none*.png") + "': there is no such file\n", 0),
            0U)
      << missing.err;
  ExpectRefusal(RunProcess({LUMVIK_COMMAND, "batch", "--files-from", Path("no list"), "-o", Out()}), kFailure,
                "cannot read '" + Path("no list") + "': there is no such file");
  ExpectRefusal(RunProcess({LUMVIK_COMMAND, "batch", "-o", Out()}), kUsage, "IN or --files-from is required");
}

TEST(ListedFilesTest, NamesAreSeparatedByLinesOrNul) {
  using List = std::vector<std::string>;
  EXPECT_EQ(NamesInList(""), List());
  EXPECT_EQ(NamesInList("a\n\n b \r\nc"), List({"a", " b ", "c"}));
  EXPECT_EQ(NamesInList(std::string("a\nb\0\0c\r\0", 8)), List({"a\nb", "c\r"}));
}

TEST_F(BatchInputsTest, ShardsDivideABatch) {
  for (char name = 'a'; name < 'k'; ++name) Photograph(std::string("photos/") + name + ".png");
  fs::copy(In(), Path("copy"));
  const auto shard = [&](const std::string& text) {
    const std::string folder = Path("shard " + text.substr(0, 1));
    return Written({In(), "--shard", text, "--name", "{n}{stem}.{ext}"}, folder);
  };
  const Names first = shard("1/3");
  Names all = first;
  std::size_t count = first.size();
  for (const char* text : {"2/3", "3/3"}) {
    const Names more = shard(text);
    EXPECT_FALSE(more.empty()) << text;
    count += more.size();
    all.insert(more.begin(), more.end());
  }
  EXPECT_FALSE(first.empty());
  EXPECT_EQ(count, 10U);
  EXPECT_EQ(all, Names({"01a.jpg", "02b.jpg", "03c.jpg", "04d.jpg", "05e.jpg", "06f.jpg", "07g.jpg",
                        "08h.jpg", "09i.jpg", "10j.jpg"}));
  EXPECT_EQ(Written({Path("copy"), "--shard", "1/3", "--name", "{n}{stem}.{ext}"}, Out()), first)
      << "it depends on where the folder is";
}

TEST(ShardTest, TextsOfShards) {
  const auto shard = ShardFrom("2/5");
  ASSERT_TRUE(shard);
  EXPECT_EQ(shard->index, 2U);
  EXPECT_EQ(shard->count, 5U);
  for (const char* text :
       {"", "/", "1", "0/5", "6/5", "1/0", "-1/5", "1/5x", "a/b", "1/ 5", "1/99999999999"}) {
    EXPECT_FALSE(ShardFrom(text)) << text;
  }
}

TEST_F(BatchInputsTest, ADryRunWritesNothing) {
  Photograph("photos/a.png");
  Photograph("photos/b.png");
  Photograph("photos/c.png");
  ASSERT_EQ(Written({In("a.png")}, Out()), Names({"a.jpg"}));
  WriteFile(Out("c.jpg"), "foreign");
  const ProcessResult result = Batch({"--dry-run", "--resume"});
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(result.out, In("a.png") + ": already developed\n" + In("b.png") + " -> " + Out("b.jpg") + "\n");
  EXPECT_EQ(result.err, "lumvik: '" + Out("c.jpg") +
                            "' exists and was not written by lumvik, or was changed since; --overwrite "
                            "replaces it\nlumvik: 1 to develop, 1 to skip, 1 would fail\n");
  EXPECT_EQ(Outputs(), Names({"a.jpg", "c.jpg"}));
  const ProcessResult fresh =
      RunProcess({LUMVIK_COMMAND, "batch", In(), "-o", Path("new"), "--dry-run", "--json"});
  EXPECT_EQ(fresh.status, kSuccess);
  EXPECT_EQ(Json::parse(fresh.out).at("pending"), 3);
  EXPECT_EQ(Json::parse(fresh.out).at("dry_run"), true);
  EXPECT_FALSE(fs::exists(Path("new")));
}

}  // namespace
}  // namespace lumvik::test
