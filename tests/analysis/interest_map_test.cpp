#include "analysis/interest_map.h"

#include <gtest/gtest.h>

#include "image/image_buffer.h"
#include "reference/auto_crop.h"
#include "support/test_images.h"

namespace lumvik {
namespace {

// A bright rectangle on noise of values up to `noise`.
cv::Mat BrightRectangle(const cv::Rect& place, double noise) {
  cv::Mat luminance(128, 192, CV_32F);
  cv::RNG(3).fill(luminance, cv::RNG::UNIFORM, 0, noise);
  luminance(place).setTo(0.8);
  return luminance;
}

cv::Point Brightest(const cv::Mat& plane) {
  cv::Point place;
  cv::minMaxLoc(plane, nullptr, nullptr, nullptr, &place);
  return place;
}

void ExpectFromZeroToOne(const cv::Mat& plane) {
  double smallest = -1;
  double largest = -1;
  cv::minMaxLoc(plane, &smallest, &largest);
  EXPECT_NEAR(smallest, 0, 1e-6);
  EXPECT_NEAR(largest, 1, 1e-6);
}

TEST(EdgeStrength, IsHighestAlongAStepAndZeroElsewhere) {
  const cv::Mat edges = edge_strength(BrightRectangle({60, 40, 30, 20}, 0));
  ASSERT_EQ(edges.size(), cv::Size(192, 128));
  ExpectFromZeroToOne(edges);
  EXPECT_EQ(edges.at<float>(50, 10), 0);
  EXPECT_EQ(edges.at<float>(50, 75), 0);
  EXPECT_EQ(edges.at<float>(50, 59), edges.at<float>(50, 60));
  EXPECT_EQ(edges.at<float>(50, 59), edges.at<float>(39, 70)) << "the same in both directions";
  EXPECT_GT(edges.at<float>(50, 59), 0.9F);
}

TEST(EdgeStrength, IsZeroForAFlatImage) {
  EXPECT_EQ(cv::countNonZero(edge_strength(cv::Mat(20, 30, CV_32F, cv::Scalar(0.4)))), 0);
}

TEST(SpectralSaliency, FindsWhatStandsOut) {
  for (const cv::Rect& place :
       {cv::Rect(30, 30, 12, 10), cv::Rect(96, 20, 12, 10), cv::Rect(140, 80, 12, 10)}) {
    const cv::Mat saliency = spectral_saliency(BrightRectangle(place, 0.05));
    ASSERT_EQ(saliency.size(), cv::Size(64, 64));
    ExpectFromZeroToOne(saliency);
    const cv::Point brightest = Brightest(saliency);
    EXPECT_NEAR(brightest.x, (place.x + 6) / 3, 2) << place;
    EXPECT_NEAR(brightest.y, (place.y + 5) / 2, 2) << place;
  }
}

TEST(InterestMap, HasTheSizeOfTheImage) {
  const cv::Mat interest = InterestMap(ToRgbaFloat(test::Photograph("cat.jpg", 300)));
  EXPECT_EQ(interest.size(), test::Photograph("cat.jpg", 300).size());
  ASSERT_EQ(interest.type(), CV_32FC1);
  ExpectFromZeroToOne(interest);
}

TEST(InterestMap, EqualsTheReferenceInAllItsParts) {
  std::vector<cv::Mat> images = {test::Photograph("cat.jpg", 320),
                                 test::Photograph("tower_orientation8.jpg", 512)};
  for (const cv::Size size : test::OddSizes()) images.push_back(test::NoiseImage(size, 7));
  for (const cv::Mat& codes : images) {
    const cv::Mat image = ToRgbaFloat(codes);
    cv::Mat plane;
    cv::extractChannel(image, plane, 1);
    EXPECT_TRUE(test::SameBytes(edge_strength(plane), reference::EdgeStrength(plane))) << image.size();
    EXPECT_TRUE(test::SameBytes(spectral_saliency(plane), reference::SpectralSaliency(plane)))
        << image.size();
    EXPECT_TRUE(test::SameBytes(InterestMap(image), reference::InterestMap(image))) << image.size();
  }
}

}  // namespace
}  // namespace lumvik
