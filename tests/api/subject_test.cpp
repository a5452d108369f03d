// Subject mask and cutout: states, error texts, status codes, and the lifetime of the mask.
#include <limits>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "api_test.h"
#include "reference/subject_mask.h"

namespace lumvik::test {
namespace {

constexpr int kOperationFailed = -2;
constexpr char kGrabCutFailed[] = "GrabCut failed";
constexpr char kNoMaskYet[] = "no segmentation mask — call lumvik_segment_subject first";
constexpr char kNoMask[] = "no segmentation mask";
constexpr char kNotWritten[] = "failed to write PNG";
constexpr uint64_t kSeed = 7;
constexpr float kMiddle = -1;

// A bright disc on a dark background.
cv::Mat DiscPicture() {
  cv::Mat picture(90, 120, CV_8UC3, cv::Scalar(40, 70, 50));
  cv::circle(picture, {60, 45}, 22, cv::Scalar(60, 140, 200), cv::FILLED);
  cv::Mat noise(picture.size(), CV_8UC3);
  cv::RNG(2).fill(noise, cv::RNG::UNIFORM, 0, 12);
  return picture + noise;
}

class SubjectTest : public ApiTest {
 protected:
  void LoadRaw() const {
    ASSERT_EQ(lumvik_load_arw(ctx(), WriteRaw("disc.arw", {}, DiscPicture()).c_str(), 1), LUMVIK_OK)
        << LastError();
  }

  int Segment(float x = kMiddle, float y = kMiddle) const {
    cv::theRNG().state = kSeed;
    return lumvik_segment_subject(ctx(), x, y);
  }

  void LoadAndSegment() const {
    LoadRaw();
    ASSERT_EQ(Segment(), LUMVIK_OK) << LastError();
  }

  cv::Mat Mask() const {
    cv::Mat mask(ctx()->mask.size(), CV_8U);
    EXPECT_EQ(lumvik_get_mask(ctx(), mask.data, static_cast<int>(mask.total())), LUMVIK_OK) << LastError();
    return mask;
  }
};

TEST_F(SubjectTest, TheUndevelopedRawImageIsSegmented) {
  LoadRaw();
  lumvik_set_exposure(ctx(), -5);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  ASSERT_EQ(Segment(), LUMVIK_OK) << LastError();
  EXPECT_TRUE(ctx()->render_valid);
  cv::theRNG().state = kSeed;
  const cv::Mat expected = reference::SubjectMask(ctx()->decoded.image, {24, 18, 72, 54});
  const cv::Mat mask = Mask();
  EXPECT_TRUE(SameBytes(mask, expected));
  EXPECT_EQ(mask.at<uint8_t>(45, 60), 255);
  EXPECT_EQ(mask.at<uint8_t>(5, 5), 0);
}

TEST_F(SubjectTest, SegmentingDoesNotRender) {
  LoadAndSegment();
  EXPECT_FALSE(ctx()->render_valid);
  EXPECT_TRUE(ctx()->rendered.empty());
}

TEST_F(SubjectTest, SegmentingNeedsARawFile) {
  EXPECT_EQ(lumvik_segment_subject(nullptr, kMiddle, kMiddle), kFailed);
  EXPECT_EQ(Segment(), kFailed);
  EXPECT_EQ(LastError(), kNoImage);
  ctx()->last_error.clear();
  LoadNeutral();
  EXPECT_EQ(Segment(), kFailed);
  EXPECT_EQ(LastError(), kNoImage) << "an ordinary image is not segmented";
  EXPECT_FALSE(ctx()->mask_valid);
}

TEST_F(SubjectTest, AFailedSegmentationKeepsTheEarlierMask) {
  LoadAndSegment();
  const cv::Mat before = Mask();
  EXPECT_EQ(Segment(1.4F, kMiddle), kOperationFailed);
  EXPECT_EQ(LastError(), kGrabCutFailed);
  EXPECT_TRUE(SameBytes(Mask(), before));
  LoadNeutral();
  EXPECT_EQ(Segment(), kFailed);
  EXPECT_TRUE(SameBytes(Mask(), before));
}

TEST_F(SubjectTest, AFailedFirstSegmentationLeavesNoMask) {
  LoadRaw();
  EXPECT_EQ(Segment(kMiddle, 2), kOperationFailed);
  EXPECT_FALSE(ctx()->mask_valid);
  uint8_t byte = 0;
  EXPECT_EQ(lumvik_get_mask(ctx(), &byte, 1), kFailed);
  EXPECT_EQ(LastError(), kNoMaskYet);
}

TEST_F(SubjectTest, TheMaskSurvivesUnloadingLoadingAndSettings) {
  LoadAndSegment();
  const cv::Mat mask = Mask();
  lumvik_set_crop(ctx(), 0.1F, 0.1F, 0.5F, 0.5F);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Mask(), mask));
  lumvik_reset_adjustments(ctx());
  EXPECT_TRUE(SameBytes(Mask(), mask));
  lumvik_unload(ctx());
  EXPECT_TRUE(SameBytes(Mask(), mask));
  LoadNeutral();
  EXPECT_TRUE(SameBytes(Mask(), mask));
}

TEST_F(SubjectTest, GetMaskChecksArgumentsThenStateThenSize) {
  uint8_t byte = 0xA5;
  EXPECT_EQ(lumvik_get_mask(nullptr, &byte, 1), kFailed);
  EXPECT_EQ(lumvik_get_mask(ctx(), nullptr, 1), kFailed);
  EXPECT_EQ(LastError(), "");
  EXPECT_EQ(lumvik_get_mask(ctx(), &byte, 0), kFailed);
  EXPECT_EQ(LastError(), kNoMaskYet);
  EXPECT_EQ(byte, 0xA5);
}

TEST_F(SubjectTest, ABufferTooSmallGivesItsOwnCodeAndNoText) {
  LoadAndSegment();
  ctx()->last_error = "another";
  const int size = 120 * 90;
  Bytes buffer(size + 3, 0xA5);
  for (const int capacity : {size - 1, 0, -1, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(lumvik_get_mask(ctx(), buffer.data(), capacity), kOperationFailed);
    EXPECT_EQ(buffer, Bytes(buffer.size(), 0xA5));
  }
  EXPECT_EQ(LastError(), "another");
  EXPECT_EQ(lumvik_get_mask(ctx(), buffer.data(), size), LUMVIK_OK);
  EXPECT_EQ(Bytes(buffer.end() - 3, buffer.end()), Bytes(3, 0xA5));
}

TEST_F(SubjectTest, TheCutoutHasTheRenderAsColorAndTheMaskAsAlpha) {
  LoadAndSegment();
  lumvik_set_exposure(ctx(), 0.5F);
  lumvik_set_bg_blur(ctx(), 80);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  ASSERT_EQ(lumvik_export_subject_png(ctx(), Path("subject.png").c_str()), LUMVIK_OK) << LastError();
  const cv::Mat file = cv::imread(Path("subject.png"), cv::IMREAD_UNCHANGED);
  ASSERT_EQ(file.type(), CV_8UC4);
  cv::Mat alpha;
  cv::extractChannel(file, alpha, 3);
  EXPECT_TRUE(SameBytes(alpha, Mask()));
  cv::Mat color;
  cv::cvtColor(file, color, cv::COLOR_BGRA2RGB);
  cv::Mat rendered;
  cv::cvtColor(ToRgba8(ctx()->rendered), rendered, cv::COLOR_RGBA2RGB);
  EXPECT_TRUE(SameBytes(color, rendered)) << "sharp: only the preview is blurred";
}

TEST_F(SubjectTest, TheCutoutRendersWhenStaleAndLeavesTheRenderStale) {
  LoadAndSegment();
  ASSERT_EQ(lumvik_export_subject_png(ctx(), Path("subject.png").c_str()), LUMVIK_OK);
  EXPECT_FALSE(ctx()->render_valid);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_set_exposure(ctx(), 2);
  ASSERT_EQ(lumvik_export_subject_png(ctx(), Path("again.png").c_str()), LUMVIK_OK);
  EXPECT_EQ(ReadBytes(Path("again.png")), ReadBytes(Path("subject.png"))) << "the render before the setter";
}

TEST_F(SubjectTest, WithoutAMaskNoFileIsWritten) {
  EXPECT_EQ(lumvik_export_subject_png(nullptr, "a.png"), kFailed);
  EXPECT_EQ(lumvik_export_subject_png(ctx(), nullptr), kFailed);
  EXPECT_EQ(LastError(), "");
  LoadRaw();
  EXPECT_EQ(lumvik_export_subject_png(ctx(), Path("subject.png").c_str()), kFailed);
  EXPECT_EQ(LastError(), kNoMask);
  EXPECT_FALSE(std::filesystem::exists(Path("subject.png")));
}

TEST_F(SubjectTest, AFileThatCannotBeWrittenFails) {
  LoadAndSegment();
  EXPECT_EQ(lumvik_export_subject_png(ctx(), Path("no folder/subject.png").c_str()), kOperationFailed);
  EXPECT_EQ(LastError(), kNotWritten);
  ctx()->last_error.clear();
  std::filesystem::create_directory(Path("folder.png"));
  EXPECT_EQ(lumvik_export_subject_png(ctx(), Path("folder.png").c_str()), kOperationFailed);
  EXPECT_EQ(LastError(), kNotWritten);
}

TEST_F(SubjectTest, AMaskOfAnotherSizeThrowsAndWritesNothing) {
  LoadAndSegment();
  lumvik_set_crop(ctx(), 0.1F, 0.1F, 0.5F, 0.5F);
  const std::string path = Path("subject.png");
  EXPECT_THROW(lumvik_export_subject_png(ctx(), path.c_str()), cv::Exception);
  LoadNeutral();
  EXPECT_THROW(lumvik_export_subject_png(ctx(), path.c_str()), cv::Exception);
  lumvik_unload(ctx());
  EXPECT_THROW(lumvik_export_subject_png(ctx(), path.c_str()), cv::Exception);
  EXPECT_EQ(LastError(), "");
  EXPECT_FALSE(std::filesystem::exists(path));
}

}  // namespace
}  // namespace lumvik::test
