// `lumvik batch` on existing files.
#include <filesystem>
#include <opencv2/imgcodecs.hpp>

#include "batch_fixture.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class BatchOverwriteTest : public BatchTest {
 protected:
  void Gray(const std::string& path, int value) const {
    ASSERT_TRUE(cv::imwrite(path, cv::Mat(8, 8, CV_8UC3, cv::Scalar(value, value, value))));
  }
};

TEST_F(BatchOverwriteTest, ForeignFilesAreKept) {
  Photograph("photos/a.png");
  Photograph("photos/b.png");
  fs::create_directory(Out());
  WriteFile(Out("a.jpg"), "last year's work");
  const ProcessResult kept = Batch();
  EXPECT_EQ(kept.status, kFailure);
  EXPECT_EQ(kept.out, Out("b.jpg") + " 60x40\n");
  EXPECT_EQ(kept.err.rfind("lumvik: 1 to develop", 0), 0U) << kept.err;
  EXPECT_NE(kept.err.find("\nlumvik: '" + Out("a.jpg") +
                          "' exists and was not written by lumvik, or was changed since; --overwrite "
                          "replaces it\nlumvik: 1 developed, 1 failed ("),
            std::string::npos)
      << kept.err;
  EXPECT_EQ(ReadFile(Out("a.jpg")), "last year's work");
  EXPECT_EQ(Batch({"--overwrite"}).status, kSuccess);
  EXPECT_FALSE(cv::imread(Out("a.jpg")).empty());
}

TEST_F(BatchOverwriteTest, TheJpegOfTheCameraIsKept) {
  fs::copy_file(kRawSample, In("DSC01.ARW"));
  const std::string camera = ReadFile(Photograph("photos/DSC01.jpg"));
  const ProcessResult result = RunProcess({LUMVIK_COMMAND, "batch", In("*.ARW"), "-o", In()});
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(result.err.find("'" + In("DSC01.jpg") + "' exists and was not written by lumvik"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(ReadFile(In("DSC01.jpg")), camera);
}

TEST_F(BatchOverwriteTest, OwnOutputsOfTheSamePhotographAreReplaced) {
  Gray(In("a.png"), 50);
  ASSERT_EQ(Batch().status, kSuccess);
  const std::string first = ReadFile(Out("a.jpg"));
  fs::permissions(Out("a.jpg"), fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(Batch({"--exposure", "1"}).status, kSuccess);
  EXPECT_NE(ReadFile(Out("a.jpg")), first);
  EXPECT_EQ(fs::status(Out("a.jpg")).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(BatchOverwriteTest, OutputsOfAnotherPhotographAreKept) {
  Gray(In("a.png"), 50);
  ASSERT_EQ(Batch().status, kSuccess);
  const std::string first = ReadFile(Out("a.jpg"));
  fs::remove(In("a.png"));
  Gray(In("a.png"), 150);
  const ProcessResult result = Batch();
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(result.err.find("lumvik: '" + Out("a.jpg") +
                            "' exists and was developed from another photograph; --overwrite replaces it\n"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(ReadFile(Out("a.jpg")), first);
  EXPECT_EQ(Batch({"--overwrite"}).status, kSuccess);
  EXPECT_NE(ReadFile(Out("a.jpg")), first);
}

// The file appears while the photograph is developed.
TEST_F(BatchOverwriteTest, AFileThatAppearsDuringTheRunIsKept) {
  const std::string slow = SlowPhotograph("slow.png");
  RunningProcess batch(BatchCommand({"--nr-luminance", "50"}));
  AwaitWorker(batch.id(), slow);
  WriteFile(Out("slow.jpg"), "written in the meantime");
  const ProcessResult result = batch.Wait();
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(result.err.find("'" + Out("slow.jpg") + "' exists and was not written by lumvik"),
            std::string::npos)
      << result.err;
  EXPECT_EQ(ReadFile(Out("slow.jpg")), "written in the meantime");
}

TEST_F(BatchOverwriteTest, ALinkIsFollowed) {
  Photograph("photos/a.png");
  fs::create_directories(Path("elsewhere"));
  fs::create_directory(Out());
  fs::create_symlink(Path("elsewhere/b.jpg"), Out("a.jpg"));
  EXPECT_EQ(Batch().status, kSuccess);
  EXPECT_TRUE(fs::is_symlink(Out("a.jpg")));
  EXPECT_FALSE(cv::imread(Path("elsewhere/b.jpg")).empty());
  EXPECT_FALSE(fs::exists(Path("elsewhere/.lumvik")));
}

}  // namespace
}  // namespace lumvik::test
