#include "segmentation/subject_mask.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <opencv2/imgproc.hpp>

#include "image/raw_decoder.h"
#include "reference/subject_mask.h"
#include "support/file_bytes.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

constexpr float kCenter = -1;
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr uint64_t kSeeds[] = {1, 22, 333};

// The outline of the cat in cat.jpg, drawn by hand, in pixels of kCatFrame.
const std::vector<cv::Point> kCat = {
    {128, 275}, {126, 205}, {150, 150}, {200, 95},  {245, 65},  {272, 57},  {295, 70},  {305, 110},
    {303, 165}, {314, 188}, {370, 180}, {430, 160}, {475, 152}, {491, 165}, {485, 190}, {455, 235},
    {447, 258}, {468, 292}, {520, 282}, {600, 300}, {600, 650}, {540, 690}, {500, 725}, {420, 770},
    {330, 795}, {260, 790}, {210, 755}, {188, 712}, {120, 716}, {60, 710},  {22, 680},  {0, 640},
    {0, 470},   {20, 420},  {40, 350},  {58, 270},  {90, 215},  {118, 195}};
const cv::Size kCatFrame(600, 800);

cv::Mat CatMask() {
  cv::Mat mask(kCatFrame, CV_8U, cv::Scalar(0));
  cv::fillPoly(mask, std::vector<std::vector<cv::Point>>{kCat}, 255);
  return mask;
}

cv::Mat CatPhotograph() {
  return test::ResizedPhotograph("cat.jpg", kCatFrame);
}

// The image after a round trip through a RAW file.
cv::Mat ThroughRaw(const cv::Mat& image) {
  const test::TempDir folder;
  const std::string path = folder.File("cat.ARW");
  cv::Mat rgb;
  cv::cvtColor(ToRgba8(image), rgb, cv::COLOR_RGBA2RGB);
  test::WriteBytes(path, test::MakeRawFile(rgb));
  DecodedImage decoded;
  EXPECT_TRUE(DecodeRaw(path, kRawFull, decoded)) << decoded.error;
  return decoded.image;
}

// A disc on a background of another color, with some noise.
cv::Mat Disc(cv::Size size, cv::Point center, int radius) {
  cv::Mat image(size, CV_16UC4, cv::Scalar(12000, 20000, 14000, 65535));
  cv::circle(image, center, radius, cv::Scalar(52000, 30000, 9000, 65535), cv::FILLED);
  cv::Mat noise(size, CV_16UC4);
  cv::RNG(4).fill(noise, cv::RNG::UNIFORM, 0, 3000);
  return image + noise;
}

cv::Mat Segmented(const cv::Mat& image, float x = kCenter, float y = kCenter, uint64_t seed = kSeeds[0]) {
  cv::theRNG().state = seed;
  cv::Mat mask;
  EXPECT_TRUE(SegmentSubject(image, x, y, mask));
  return mask;
}

double Share(const cv::Mat& part, const cv::Mat& whole) {
  return cv::countNonZero(part) / static_cast<double>(cv::countNonZero(whole));
}

TEST(SubjectRectangle, Is60PercentOfEachSideAroundThePoint) {
  EXPECT_EQ(SubjectRectangle({400, 300}, -1, -1), cv::Rect(80, 60, 240, 180));
  EXPECT_EQ(SubjectRectangle({400, 300}, 0.5F, 0.5F), cv::Rect(80, 60, 240, 180));
  EXPECT_EQ(SubjectRectangle({512, 512}, 1, 1), cv::Rect(359, 359, 152, 152));
}

TEST(SubjectRectangle, ANegativeOrNanFractionMeansTheCenter) {
  const cv::Rect center = SubjectRectangle({401, 301}, 0.5F, 0.5F);
  EXPECT_EQ(SubjectRectangle({401, 301}, -0.001F, kNaN), center);
  EXPECT_EQ(SubjectRectangle({401, 301}, kNaN, -1e30F), center);
  EXPECT_EQ(SubjectRectangle({401, 301}, -0.0F, -1).x, 1);  // -0 is the left edge
}

TEST(SubjectRectangle, TruncatesEveryDivision) {
  // 3 * 333 / 10 = 99.9, 333 * 0.7 = 233.1, 3 * 333 / 5 = 199.8
  EXPECT_EQ(SubjectRectangle({333, 337}, 0.7F, -1), cv::Rect(134, 67, 198, 202));
}

TEST(SubjectRectangle, StaysAwayFromEveryBorder) {
  EXPECT_EQ(SubjectRectangle({100, 100}, 0, 0), cv::Rect(1, 1, 60, 60));
  EXPECT_EQ(SubjectRectangle({100, 100}, 0.8F, 0.9F), cv::Rect(50, 60, 49, 39));
}

TEST(SubjectRectangle, IsEmptyFarOutside) {
  for (const float far : {1.3F, 2.0F, 1e9F, 3e38F, std::numeric_limits<float>::infinity()}) {
    EXPECT_LE(SubjectRectangle({100, 100}, far, -1).width, 0) << far;
    EXPECT_LE(SubjectRectangle({100, 100}, -1, far).height, 0) << far;
  }
}

TEST(SegmentSubject, FindsADisc) {
  const cv::Size size(400, 300);
  const cv::Mat mask = Segmented(Disc(size, {200, 150}, 70));
  ASSERT_EQ(mask.type(), CV_8UC1);
  ASSERT_EQ(mask.size(), size);
  EXPECT_EQ(mask.at<uint8_t>(150, 200), 255);
  EXPECT_EQ(mask.at<uint8_t>(150, 200 - 60), 255);
  EXPECT_EQ(mask.at<uint8_t>(150, 200 + 80), 0);
  EXPECT_EQ(mask.at<uint8_t>(5, 5), 0);
}

TEST(SegmentSubject, OnlyTheOutlineIsSoft) {
  const cv::Mat mask = Segmented(Disc({400, 300}, {200, 150}, 70));
  cv::Mat soft = (mask > 0) & (mask < 255);
  EXPECT_GT(cv::countNonZero(soft), 0);
  cv::Mat near_outline(mask.size(), CV_8U, cv::Scalar(0));
  cv::circle(near_outline, {200, 150}, 70, 255, 17);
  EXPECT_EQ(cv::countNonZero(soft & ~near_outline), 0);
}

TEST(SegmentSubject, FindsTheSubjectAtTheGivenPoint) {
  cv::Mat two = Disc({400, 300}, {100, 150}, 50);
  cv::circle(two, {300, 150}, 50, cv::Scalar(52000, 30000, 9000, 65535), cv::FILLED);
  const cv::Mat left = Segmented(two, 0.15F, 0.5F);
  EXPECT_EQ(left.at<uint8_t>(150, 100), 255);
  EXPECT_EQ(left.at<uint8_t>(150, 300), 0);
  const cv::Mat right = Segmented(two, 0.85F, 0.5F);
  EXPECT_EQ(right.at<uint8_t>(150, 100), 0);
  EXPECT_EQ(right.at<uint8_t>(150, 300), 255);
}

TEST(SegmentSubject, EqualsTheReferenceWithTheSameSeed) {
  for (const cv::Mat& image : {Disc({400, 300}, {180, 140}, 60), test::Photograph("cat.jpg", 200),
                               test::Photograph("eiffel_gps_north_east.jpg", 520)}) {
    const cv::Rect rectangle = SubjectRectangle(reference::SegmentationImage(image).size(), 0.45F, kCenter);
    for (const uint64_t seed : {kSeeds[0], kSeeds[1]}) {
      const cv::Mat mask = Segmented(image, 0.45F, kCenter, seed);
      cv::theRNG().state = seed;
      EXPECT_TRUE(test::SameBytes(mask, reference::SubjectMask(image, rectangle))) << image.size();
    }
  }
}

TEST(SegmentSubject, SegmentsASmallCopyAndEnlargesTheMask) {
  const cv::Mat image = test::ResizedPhotograph("cat.jpg", {3000, 2000});
  EXPECT_EQ(reference::SegmentationImage(image).size(), cv::Size(512, 341));
  EXPECT_EQ(Segmented(image).size(), image.size());
}

// GrabCut takes everything outside the rectangle for background. That includes parts of the cat, so it also
// drops parts of the same color within.
TEST(SegmentSubject, FindsPartOfACatThatFillsTheFrame) {
  const cv::Mat image = ThroughRaw(CatPhotograph());
  ASSERT_EQ(image.size(), kCatFrame);
  cv::Mat rectangle(kCatFrame, CV_8U, cv::Scalar(0));
  rectangle(SubjectRectangle(kCatFrame, kCenter, kCenter)).setTo(255);
  const cv::Mat cat = CatMask() & rectangle;
  for (const uint64_t seed : kSeeds) {
    const cv::Mat found = Segmented(image, kCenter, kCenter, seed) > 127;
    EXPECT_GT(Share(found & CatMask(), found), 0.99);
    EXPECT_GT(Share(found & cat, cat), 0.6);
  }
}

// The same cat, smaller, against the sky of another photograph.
TEST(SegmentSubject, FindsACatAwayFromTheBorders) {
  const cv::Size frame(800, 600);
  const cv::Rect place(275, 125, 262, 350);
  cv::Mat cat;
  cv::resize(CatPhotograph(), cat, place.size(), 0, 0, cv::INTER_AREA);
  cv::Mat cat_mask;
  cv::resize(CatMask(), cat_mask, place.size(), 0, 0, cv::INTER_NEAREST);
  const cv::Rect sky(430, 0, 170, 300);
  cv::Mat image;
  cv::resize(test::Photograph("eiffel_gps_north_east.jpg", 600)(sky), image, frame);
  cat.copyTo(image(place), cat_mask);
  cv::Mat expected(frame, CV_8U, cv::Scalar(0));
  cat_mask.copyTo(expected(place));

  const cv::Mat decoded = ThroughRaw(image);
  for (const uint64_t seed : kSeeds) {
    const cv::Mat found = Segmented(decoded, kCenter, kCenter, seed) > 127;
    EXPECT_GT(Share(found & expected, found | expected), 0.9);
  }
}

TEST(SegmentSubject, FailsAndKeepsTheMaskIfTheRectangleIsEmpty) {
  const cv::Mat image = Disc({200, 150}, {100, 75}, 40);
  const cv::Mat earlier(3, 3, CV_8U, cv::Scalar(77));
  for (const auto& [x, y] :
       std::vector<std::pair<float, float>>{{1.3F, -1}, {-1, 1.3F}, {5, 5}, {1e30F, 0}}) {
    cv::Mat mask = earlier.clone();
    EXPECT_FALSE(SegmentSubject(image, x, y, mask)) << x << ' ' << y;
    EXPECT_TRUE(test::SameBytes(mask, earlier));
  }
}

TEST(SegmentSubject, FailsForTinyImages) {
  for (const cv::Size size : {cv::Size(1, 1), cv::Size(2, 2), cv::Size(400, 1), cv::Size(1, 400)}) {
    cv::Mat mask;
    EXPECT_FALSE(SegmentSubject(test::NoiseImage(size, 1), kCenter, kCenter, mask)) << size;
    EXPECT_TRUE(mask.empty());
  }
}

}  // namespace
}  // namespace lumvik
