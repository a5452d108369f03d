// Outputs that cannot be written: one message, and existing files are kept.
#include <cstdint>
#include <filesystem>
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"
#include "exif_file.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class OutputFailureTest : public CommandTest {
 protected:
  void ExpectRefusedOutput(const std::string& output, const std::string& reason) const {
    ExpectRefusal(Develop(Photograph("in.png"), output), kFailure, reason);
  }
};

TEST_F(OutputFailureTest, AMissingFolder) {
  ExpectRefusedOutput(Path("no folder/out.jpg"), "there is no folder '" + Path("no folder") + "'");
  EXPECT_FALSE(fs::exists(Path("no folder")));
}

TEST_F(OutputFailureTest, AFolderThatIsAFile) {
  WriteFile(Path("file"), "content");
  ExpectRefusedOutput(Path("file/out.jpg"), "'" + Path("file") + "' is not a folder");
}

TEST_F(OutputFailureTest, AFolder) {
  fs::create_directory(Path("out.jpg"));
  ExpectRefusedOutput(Path("out.jpg"), "it is a folder");
}

// A pipe stands in for devices.
TEST_F(OutputFailureTest, SpecialFiles) {
  MakePipe(Path("pipe.jpg"));
  fs::create_symlink("pipe.jpg", Path("out.jpg"));
  ExpectRefusedOutput(Path("pipe.jpg"), "it is not a regular file");
  ExpectRefusedOutput(Path("out.jpg"), "it is not a regular file");
  EXPECT_TRUE(fs::is_symlink(Path("out.jpg")));
  EXPECT_TRUE(fs::is_fifo(Path("pipe.jpg")));
}

TEST_F(OutputFailureTest, CircularLinks) {
  fs::create_symlink("other.jpg", Path("out.jpg"));
  fs::create_symlink("out.jpg", Path("other.jpg"));
  ExpectRefusedOutput(Path("out.jpg"), "too many levels of symbolic links");
}

TEST_F(OutputFailureTest, ANameTooLong) {
  const std::string name = Path(std::string(300, 'a') + ".jpg");
  ExpectRefusedOutput(name, "cannot write '" + name + "': File name too long");
}

TEST_F(OutputFailureTest, AnInaccessibleFolder) {
  const std::string in = Photograph("in.png");
  fs::create_directory(Path("closed"));
  fs::permissions(Path("closed"), fs::perms::none);
  ExpectRefusal(Develop(in, Path("closed/out.jpg"), {}, UnprivilegedCommand()), kFailure,
                "cannot write '" + Path("closed/out.jpg") + "': Permission denied");
  fs::permissions(Path("closed"), fs::perms::owner_all);
}

TEST_F(OutputFailureTest, OutputAndPreviewAreTheSameFile) {
  fs::create_directory(Path("folder"));
  const std::string again = Path("folder/../out.png");
  ExpectRefusal(Develop(Photograph("in.png"), Path("out.png"), {"--preview", again}), kUsage,
                "--preview: '" + again + "' is also the file of --output");
  EXPECT_FALSE(fs::exists(Path("out.png")));
}

TEST_F(OutputFailureTest, AnUnwritableFolder) {
  const std::string in = Photograph("in.png");
  fs::create_directory(Path("closed"));
  WriteFile(Path("closed/old.jpg"), "last year's work");
  fs::permissions(Path("closed"), fs::perms::owner_read | fs::perms::owner_exec);
  for (const char* name : {"closed/new.jpg", "closed/old.jpg"}) {
    ExpectRefusal(Develop(in, Path(name), {"--overwrite"}, UnprivilegedCommand()), kFailure,
                  "cannot write into the folder '" + Path("closed") + "': Permission denied");
  }
  fs::permissions(Path("closed"), fs::perms::owner_all);
  EXPECT_EQ(ReadFile(Path("closed/old.jpg")), "last year's work");
  EXPECT_FALSE(fs::exists(Path("closed/new.jpg")));
}

TEST_F(OutputFailureTest, AnUnwritableFile) {
  const std::string in = Photograph("in.png");
  WriteFile(Path("old.jpg"), "last year's work");
  fs::permissions(Path("old.jpg"), fs::perms::owner_read);
  ExpectRefusal(Develop(in, Path("old.jpg"), {}, UnprivilegedCommand()), kFailure,
                "cannot write '" + Path("old.jpg") + "': Permission denied");
  EXPECT_EQ(ReadFile(Path("old.jpg")), "last year's work");
}

// By its own name, a different path, a symbolic link and a hard link.
TEST_F(OutputFailureTest, ThePhotographItselfIsNeverOverwritten) {
  const std::string in = Photograph("in.png");
  const std::string before = ReadFile(in);
  fs::create_directory(Path("folder"));
  fs::create_symlink("in.png", Path("symbolic.png"));
  fs::create_hard_link(in, Path("hard.jpg"));
  for (const char* name : {"in.png", "folder/../in.png", "symbolic.png", "hard.jpg"}) {
    ExpectRefusal(Develop(in, Path(name)), kFailure, "it is the input photograph");
  }
  ExpectRefusal(Develop(Path("symbolic.png"), in), kFailure, "it is the input photograph");
  EXPECT_EQ(ReadFile(in), before);
}

// A file size limit simulates a full disk: the write that exceeds it falls short.
class FullDiskTest : public CommandTest {
 protected:
  static constexpr std::uintmax_t kBlock = 512;

  FullDiskTest() : photograph_(Path("noise.jpg")) {
    cv::Mat noise(400, 600, CV_8UC3);
    cv::randu(noise, 0, 256);
    EXPECT_TRUE(cv::imwrite(photograph_, noise));
  }

  // Expects the failure with and without an existing `output`.
  void ExpectNothingLost(const std::string& output, std::uintmax_t blocks, const std::string& failure) const {
    const std::vector<std::string> prefix = {
        "sh", "-c", "trap '' XFSZ; ulimit -f " + std::to_string(blocks) + "; exec \"$0\" \"$@\"",
        LUMVIK_COMMAND};
    const std::string folder = fs::path(output).parent_path().string();
    const std::string end = "; the folder '" + folder + "' has no space for it\n";
    ExpectRefusal(Develop(photograph_, output, {}, prefix), kDiskFull, failure + end);
    EXPECT_FALSE(fs::exists(output));
    WriteFile(output, "last year's work");
    ExpectRefusal(Develop(photograph_, output, {"--overwrite"}, prefix), kDiskFull, failure + end);
    EXPECT_EQ(ReadFile(output), "last year's work");
  }

  const std::string photograph_;
};

TEST_F(FullDiskTest, TheImageDoesNotFit) {
  const std::uintmax_t half = fs::file_size(photograph_) / 2 / kBlock;
  for (const char* name : {"out.jpg", "out.png", "out.tif"}) {
    ExpectNothingLost(Path(name), half, "cannot write '" + Path(name) + "': File too large");
  }
}

TEST_F(FullDiskTest, TheImageFitsWithoutItsMetadata) {
  const std::vector<std::string> names = {"out.jpg", "out.png", "out.tif"};
  std::vector<std::uintmax_t> bare;
  for (const std::string& name : names) {
    ASSERT_EQ(Develop(photograph_, Path(name)).status, kSuccess);
    bare.push_back(fs::file_size(Path(name)) / kBlock);
    fs::remove(Path(name));
  }
  Exiv2::ExifData exif;
  std::string comment(50000, 'c');
  cv::RNG random(1);
  for (char& c : comment) c = static_cast<char>(random.uniform(1, 256));  // incompressible, for PNG
  exif["Exif.Photo.UserComment"] = comment;
  WriteExif(photograph_, exif);
  for (std::size_t i = 0; i < names.size(); ++i) {
    ExpectNothingLost(Path(names[i]), bare[i] + 8, "cannot write '" + Path(names[i]) + "': File too large");
  }
}

TEST_F(OutputFailureTest, AFullStandardOutputIsReported) {
  const ProcessResult result = RunProcess({"sh", "-c", "\"$0\" --version > /dev/full", LUMVIK_COMMAND});
  ExpectRefusal(result, kFailure, "cannot write to standard output");
}

}  // namespace
}  // namespace lumvik::test
