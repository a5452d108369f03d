#include "analysis/auto_crop.h"

#include <gtest/gtest.h>

#include "reference/auto_crop.h"
#include "support/test_images.h"

namespace lumvik {

// In the namespace of the type, where argument-dependent lookup finds it.
static bool operator==(const CropRectangle& a, const CropRectangle& b) {
  return a.x == b.x && a.y == b.y && a.w == b.w && a.h == b.h;
}

static void PrintTo(const CropRectangle& crop, std::ostream* out) {
  *out << crop.x << ", " << crop.y << ", " << crop.w << ", " << crop.h;
}

namespace {

constexpr float kAspect = 1.5F;
constexpr float kMargin = 0.02F;
constexpr CropRectangle kWholeFrame = {0, 0, 1, 1};

cv::Mat Plane(cv::Size size, double value = 0) {
  return {size, CV_32F, cv::Scalar(value)};
}

cv::Mat NoisePlane(cv::Size size, uint64_t seed) {
  cv::Mat plane(size, CV_32F);
  cv::RNG(seed).fill(plane, cv::RNG::UNIFORM, 0, 1);
  return plane;
}

// A crop in pixels as fractions of the frame.
CropRectangle Fractions(const cv::Rect& crop, cv::Size frame) {
  const auto width = static_cast<float>(frame.width);
  const auto height = static_cast<float>(frame.height);
  return {static_cast<float>(crop.x) / width, static_cast<float>(crop.y) / height,
          static_cast<float>(crop.width) / width, static_cast<float>(crop.height) / height};
}

// Interest that grows by `row` per row and by `column` per column.
cv::Mat Ramp(cv::Size size, float row, float column) {
  cv::Mat plane(size, CV_32F);
  for (int y = 0; y < plane.rows; ++y) {
    for (int x = 0; x < plane.cols; ++x) {
      plane.at<float>(y, x) = row * static_cast<float>(y) + column * static_cast<float>(x);
    }
  }
  return plane;
}

TEST(RectangleSums, AreThoseOfThePixels) {
  const cv::Mat plane = NoisePlane({37, 23}, 1);
  const RectangleSums sums(plane);
  EXPECT_EQ(sums.PlaneSize(), plane.size());
  cv::Mat exact;  // cv::sum() partly adds floats in single precision
  plane.convertTo(exact, CV_64F);
  for (const cv::Rect& r : {cv::Rect(0, 0, 37, 23), cv::Rect(0, 0, 1, 1), cv::Rect(36, 22, 1, 1),
                            cv::Rect(5, 7, 20, 3), cv::Rect(4, 4, 0, 0)}) {
    EXPECT_NEAR(sums(r), cv::sum(exact(r))[0], 1e-11) << r;
  }
}

TEST(ThirdsScore, SumsTheSquaresAroundTheFourIntersections) {
  // Squares of radius 2 around the columns 30 and 50 and the rows 23.3 and 36.7.
  const cv::Rect candidate(10, 10, 60, 40);
  EXPECT_EQ(thirds_score(RectangleSums(Plane({100, 100}, 1)), candidate), 64);
  const auto score_of_pixel = [&](int x, int y) {
    cv::Mat plane = Plane({100, 100});
    plane.at<float>(y, x) = 1;
    return thirds_score(RectangleSums(plane), candidate);
  };
  for (const cv::Point inside :
       {cv::Point(28, 21), cv::Point(31, 24), cv::Point(48, 21), cv::Point(51, 37)}) {
    EXPECT_EQ(score_of_pixel(inside.x, inside.y), 1) << inside;
  }
  for (const cv::Point outside :
       {cv::Point(27, 21), cv::Point(28, 20), cv::Point(32, 24), cv::Point(31, 25), cv::Point(40, 30)}) {
    EXPECT_EQ(score_of_pixel(outside.x, outside.y), 0) << outside;
  }
}

TEST(ThirdsScore, IsZeroForSmallCandidates) {
  EXPECT_EQ(thirds_score(RectangleSums(Plane({100, 100}, 1)), {5, 5, 12, 12}), 0);
  EXPECT_EQ(thirds_score(RectangleSums(Plane({100, 100}, 1)), {5, 5, 13, 13}), 16);
}

TEST(ThirdsScore, EqualsTheReference) {
  const cv::Mat plane = NoisePlane({320, 213}, 2);
  const RectangleSums sums(plane);
  cv::RNG random(3);
  for (int run = 0; run < 1000; ++run) {
    const int width = random.uniform(1, 320);
    const int height = random.uniform(1, 213);
    const cv::Rect r(random.uniform(0, 321 - width), random.uniform(0, 214 - height), width, height);
    EXPECT_FLOAT_EQ(thirds_score(sums, r), reference::ThirdsScore(plane, r.x, r.y, r.width, r.height)) << r;
  }
}

TEST(BestCrop, MarginsRuleOutTheFullScaleOfALandscape) {
  const cv::Size frame(512, 341);
  EXPECT_EQ(BestCrop(Plane(frame), kAspect, kMargin), Fractions({10, 6, 484, 323}, frame));
}

TEST(BestCrop, IsALandscapeBandOfAPortrait) {
  const cv::Size frame(512, 768);
  EXPECT_EQ(BestCrop(Plane(frame), kAspect, kMargin), Fractions({10, 15, 486, 324}, frame));
}

// Without any interest the first of the largest candidates that fit wins.
TEST(BestCrop, TriesScalesDownTo80Percent) {
  const cv::Size frame(600, 400);
  EXPECT_EQ(BestCrop(Plane(frame), kAspect, 0), Fractions({0, 0, 600, 400}, frame));
  EXPECT_EQ(BestCrop(Plane(frame), kAspect, 0.04F), Fractions({24, 16, 540, 360}, frame));
  EXPECT_EQ(BestCrop(Plane(frame), kAspect, 0.0999F), Fractions({59, 39, 478, 319}, frame))
      << "the scale is 0.79999995 in single precision";
  EXPECT_EQ(BestCrop(Plane(frame), kAspect, 0.11F), kWholeFrame);
}

TEST(BestCrop, TheFirstOfEqualCandidatesWins) {
  for (const double level : {0.0, 0.1, 0.5, 1.0}) {
    const CropRectangle crop = BestCrop(Plane({512, 768}, level), kAspect, kMargin);
    EXPECT_EQ(crop.x, 10 / 512.0F) << level;
    EXPECT_EQ(crop.y, 15 / 768.0F) << level;
  }
  const CropRectangle below = BestCrop(Ramp({512, 768}, 0.001F, 0), kAspect, kMargin);
  EXPECT_EQ(below.x, 10 / 512.0F);
  EXPECT_GT(below.y, 0.3F);
}

TEST(BestCrop, FollowsTheInterest) {
  const cv::Size frame(512, 512);
  EXPECT_EQ(BestCrop(Ramp(frame, -0.002F, -0.002F), kAspect, kMargin).y, 10 / 512.0F);
  EXPECT_GT(BestCrop(Ramp(frame, 0.002F, 0), kAspect, kMargin).y, 0.3F);
  EXPECT_GT(BestCrop(Ramp(frame, 0, 0.002F), kAspect, kMargin).x, 0.1F);
}

TEST(BestCrop, EqualsTheReference) {
  for (const cv::Size frame : {cv::Size(512, 341), cv::Size(512, 768), cv::Size(512, 100), cv::Size(512, 1),
                               cv::Size(512, 2), cv::Size(1, 1), cv::Size(13, 7), cv::Size(65, 90)}) {
    for (uint64_t seed = 1; seed <= 8; ++seed) {
      const cv::Mat plane = NoisePlane(frame, seed);
      for (const float aspect : {0.5F, 1.0F, kAspect, 3.0F}) {
        EXPECT_EQ(BestCrop(plane, aspect, kMargin), reference::BestCrop(plane, aspect, kMargin))
            << frame << " seed " << seed << " aspect " << aspect;
      }
    }
  }
}

// Many equal scores: rounding errors of the sums must not decide between them.
TEST(BestCrop, EqualsTheReferenceWhereScoresTie) {
  for (const cv::Size frame : {cv::Size(512, 341), cv::Size(512, 768)}) {
    const cv::Mat noise = NoisePlane(frame, 9);
    cv::Mat mirrored;
    cv::flip(noise, mirrored, -1);
    for (const cv::Mat& plane :
         {Plane(frame), Plane(frame, 0.1), Plane(frame, 1e-3), Plane(frame, 1 / 3.0), Ramp(frame, 0.001F, 0),
          Ramp(frame, 0, 0.0013F), cv::Mat(noise + mirrored), cv::repeat(noise.row(3), frame.height, 1),
          cv::repeat(noise.col(3), 1, frame.width)}) {
      EXPECT_EQ(BestCrop(plane, kAspect, kMargin), reference::BestCrop(plane, kAspect, kMargin)) << frame;
    }
  }
}

TEST(FindCrop, KeepsTheWholeFrameOfAnEmptyImage) {
  EXPECT_EQ(find_crop({}, kAspect, kMargin), kWholeFrame);
}

TEST(FindCrop, AnAspectBelowTheMinimumMeansThreeToTwo) {
  const cv::Mat image = ToRgbaFloat(test::Photograph("cat.jpg", 300));
  const CropRectangle crop = find_crop(image, kAspect, kMargin);
  EXPECT_EQ(find_crop(image, 0.01F, kMargin), crop);
  EXPECT_EQ(find_crop(image, -1, kMargin), crop);
  EXPECT_FALSE(find_crop(image, 1, kMargin) == crop);
}

TEST(AutoCrop, KeepsTheMarginToEveryEdge) {
  for (const cv::Size size :
       {cv::Size(600, 400), cv::Size(400, 600), cv::Size(500, 500), cv::Size(900, 200)}) {
    const CropRectangle crop = AutoCrop(test::ResizedPhotograph("cat.jpg", size));
    const float margin_y = static_cast<float>(512 * size.height / size.width / 50) *
                           static_cast<float>(size.width) / static_cast<float>(512 * size.height);
    EXPECT_GE(crop.x, 10 / 512.0F) << size;
    EXPECT_LE(crop.x + crop.w, 502.001F / 512) << size;
    EXPECT_GE(crop.y, margin_y * 0.99F) << size;
    EXPECT_LE(crop.y + crop.h, 1.001F - margin_y) << size;
    EXPECT_LE(crop.w, 0.95F) << size;
    const float aspect = crop.w * static_cast<float>(size.width) / (crop.h * static_cast<float>(size.height));
    EXPECT_NEAR(aspect, kAspect, 0.02F) << size;
  }
}

TEST(AutoCrop, ContainsWhatStandsOut) {
  cv::Mat image(800, 600, CV_16UC4, cv::Scalar::all(20000));
  test::NoiseImage({200, 150}, 5).copyTo(image(cv::Rect(300, 600, 200, 150)));
  EXPECT_GT(AutoCrop(image).y, 0.4F);
  cv::flip(image, image, 0);
  EXPECT_LT(AutoCrop(image).y, 0.2F);
}

TEST(AutoCrop, EqualsTheReference) {
  std::vector<ImageBuffer> images;
  for (const char* name : {"cat.jpg", "eiffel_gps_north_east.jpg", "tower_orientation8.jpg"}) {
    for (const cv::Size size :
         {cv::Size(600, 400), cv::Size(400, 600), cv::Size(2000, 1333), cv::Size(512, 400)}) {
      images.push_back(test::ResizedPhotograph(name, size));
    }
  }
  for (uint64_t seed = 1; seed <= 10; ++seed) images.push_back(test::NoiseImage({150, 200}, seed));
  for (const cv::Size size : test::OddSizes()) images.push_back(test::NoiseImage(size, 3));
  for (const ImageBuffer& image : images) {
    EXPECT_EQ(AutoCrop(image), reference::AutoCrop(image)) << image.size();
  }
}

TEST(AutoCrop, EqualsTheReferenceOnFeaturelessImages) {
  for (const cv::Size size : {cv::Size(600, 400), cv::Size(400, 600)}) {
    for (const double level : {0.0, 30000.0, 65535.0}) {
      const ImageBuffer flat(size, CV_16UC4, cv::Scalar::all(level));
      EXPECT_EQ(AutoCrop(flat), reference::AutoCrop(flat)) << size << " " << level;
    }
    for (const cv::Mat& plane : {Ramp(size, 100, 0), Ramp(size, 0, 100), Ramp(size, 40, 40)}) {
      cv::Mat image;
      cv::merge(std::vector<cv::Mat>(4, plane), image);
      image.convertTo(image, CV_16U);
      EXPECT_EQ(AutoCrop(image), reference::AutoCrop(image)) << size;
    }
  }
}

}  // namespace
}  // namespace lumvik
