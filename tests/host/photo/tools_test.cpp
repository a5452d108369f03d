// Suggestions and the subject.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <random>
#include <string>

#include "api/settings_handle.h"
#include "photo/source_point.h"
#include "photo/test_photos.h"
#include "support/file_bytes.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using ContextForTest = std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)>;

ContextForTest LoadForTest(const std::string& path) {
  ContextForTest context(lumvik_create_context(), lumvik_destroy_context);
  EXPECT_EQ(lumvik_load_arw(context.get(), path.c_str(), 1), LUMVIK_OK);
  return context;
}

// Two disks on a dark background.
Bytes TwoSubjects() {
  cv::Mat image(64, 96, CV_8UC3);
  cv::randu(image, cv::Scalar::all(20), cv::Scalar::all(40));
  cv::circle(image, {24, 36}, 9, {60, 120, 220}, cv::FILLED);
  cv::circle(image, {74, 26}, 9, {220, 180, 60}, cv::FILLED);
  lumvik::test::RawOptions options;
  options.format = lumvik::test::RawFormat::kDng;
  return lumvik::test::MakeRawFile(image, options);
}

class ToolsTest : public testing::Test {
 protected:
  Settings Suggested(std::uint32_t what) {
    lumvik_host_settings* handle = nullptr;
    EXPECT_EQ(lumvik_host_suggest(photo_.get(), what, &handle), LUMVIK_HOST_OK) << lumvik_host_last_error();
    Settings values = ValuesOf(handle);
    CloseSettings(handle);
    return values;
  }

  // Empty without one.
  Bytes Mask() {
    Bytes mask(96 * 64);
    std::int32_t width = 0;
    std::int32_t height = 0;
    if (lumvik_host_get_mask(photo_.get(), mask.data(), mask.size(), &width, &height) != LUMVIK_HOST_OK) {
      return {};
    }
    EXPECT_EQ(width, 96);
    EXPECT_EQ(height, 64);
    return mask;
  }

  lumvik_host_status FindSubject(float x, float y) {
    cv::setRNGSeed(1);
    return lumvik_host_find_subject(photo_.get(), x, y);
  }

  Bytes EngineMask(float x, float y) {
    const ContextForTest context = LoadForTest(path_);
    cv::setRNGSeed(1);
    EXPECT_EQ(lumvik_segment_subject(context.get(), x, y), LUMVIK_OK);
    Bytes mask(96 * 64);
    EXPECT_EQ(lumvik_get_mask(context.get(), mask.data(), static_cast<int>(mask.size())), LUMVIK_OK);
    return mask;
  }

  lumvik::test::TempDir folder_;
  std::string path_ = lumvik::test::WriteBytes(folder_.File("a.dng"), TwoSubjects());
  PhotoHandle photo_ = OpenForTest(path_);
};

TEST_F(ToolsTest, SuggestionsAreThoseOfTheEngine) {
  const ContextForTest context = LoadForTest(path_);
  std::array<float, LUMVIK_ENHANCE_SLOTS> v{};
  lumvik_auto_exposure(context.get(), v.data());
  EXPECT_EQ(Suggested(LUMVIK_HOST_SUGGEST_EXPOSURE), (Settings{{"exposure", v[0]}}));
  lumvik_auto_white_balance(context.get(), &v[0], &v[1]);
  EXPECT_EQ(Suggested(LUMVIK_HOST_SUGGEST_WHITE_BALANCE), (Settings{{"temperature", v[0]}, {"tint", v[1]}}));
  lumvik_auto_crop(context.get(), &v[0], &v[1], &v[2], &v[3]);
  EXPECT_EQ(Suggested(LUMVIK_HOST_SUGGEST_CROP),
            (Settings{{"crop.x", v[0]}, {"crop.y", v[1]}, {"crop.w", v[2]}, {"crop.h", v[3]}}));
  lumvik_auto_enhance(context.get(), v.data());
  const Settings enhanced = Suggested(LUMVIK_HOST_SUGGEST_ENHANCEMENT);
  EXPECT_EQ(enhanced.size(), 15U);
  EXPECT_EQ(enhanced.count("sharpening_radius"), 0U);
  EXPECT_EQ(std::get<float>(enhanced.at("exposure")), v[0]);
  EXPECT_EQ(std::get<float>(enhanced.at("nr_color")), v[15]);
}

TEST_F(ToolsTest, SuggestionsCombineAndChangeNothing) {
  const TestPreview before = PreviewForTest(photo_);
  const Settings both = Suggested(LUMVIK_HOST_SUGGEST_EXPOSURE | LUMVIK_HOST_SUGGEST_ROTATION);
  EXPECT_EQ(both.size(), 2U);
  EXPECT_EQ(both.count("rotation"), 1U);
  lumvik_host_settings* settings = nullptr;
  for (const std::uint32_t what : {0U, 32U, 33U}) {
    EXPECT_EQ(lumvik_host_suggest(photo_.get(), what, &settings), LUMVIK_HOST_INVALID_ARGUMENT);
  }
  EXPECT_EQ(PreviewForTest(photo_), before);
}

TEST_F(ToolsTest, SuggestedRotationLevels) {
  cv::Mat image(200, 300, CV_8UC3, cv::Scalar::all(255));
  for (int x = 0; x < image.cols; ++x) {  // rises to the right
    image(cv::Rect(x, 120 - x / 10, 1, 80 + x / 10)) = cv::Scalar::all(0);
  }
  Bytes bytes;
  cv::imencode(".bmp", image, bytes);
  photo_ = OpenBytesForTest(bytes);
  EXPECT_NEAR(std::get<float>(Suggested(LUMVIK_HOST_SUGGEST_ROTATION).at("rotation")), -5.7, 1.5);
}

TEST_F(ToolsTest, TheMaskIsThatOfTheMappedPoint) {
  constexpr std::size_t kInFirst = 36 * 96 + 24;
  constexpr std::size_t kInSecond = 26 * 96 + 74;
  const auto expect_mask = [&](bool first, bool second) {
    const Bytes mask = Mask();
    ASSERT_FALSE(mask.empty());
    EXPECT_EQ(mask[kInFirst], first ? 255 : 0);
    EXPECT_EQ(mask[kInSecond], second ? 255 : 0);
  };
  EXPECT_TRUE(Mask().empty());
  EXPECT_EQ(FindSubject(0.26F, 0.55F), LUMVIK_HOST_OK) << lumvik_host_last_error();
  expect_mask(true, false);
  EXPECT_EQ(Mask(), EngineMask(0.26F, 0.55F));
  SetForTest(photo_, {{"flip_h", true}});
  EXPECT_EQ(FindSubject(0.24F, 0.4F), LUMVIK_HOST_OK);
  expect_mask(false, true);
  EXPECT_EQ(Mask(), EngineMask(0.76F, 0.4F));
  SetForTest(photo_, {{"crop.x", 0.5F}, {"crop.w", 0.5F}, {"crop.h", 0.5F}});
  EXPECT_EQ(FindSubject(0.52F, 0.9F), LUMVIK_HOST_OK);
  expect_mask(false, true);
  EXPECT_EQ(Mask(), EngineMask(0.76F, 0.45F));
  EXPECT_EQ(FindSubject(-1, 0.9F), LUMVIK_HOST_OK);
  EXPECT_EQ(Mask(), EngineMask(-1, -1));
}

TEST_F(ToolsTest, PointsOutsideThePreviewAndOtherFormatsAreRefused) {
  EXPECT_EQ(FindSubject(1.01F, 0.5F), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_EQ(FindSubject(0.5F, std::nanf("")), LUMVIK_HOST_INVALID_ARGUMENT);
  photo_ = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_PNG));
  EXPECT_EQ(FindSubject(0.5F, 0.5F), LUMVIK_HOST_UNSUPPORTED);
  std::int32_t side = 0;
  std::uint8_t pixel = 0;
  EXPECT_EQ(lumvik_host_get_mask(photo_.get(), &pixel, 1, &side, &side), LUMVIK_HOST_NOT_FOUND);
}

TEST_F(ToolsTest, ATooSmallMaskLearnsTheSize) {
  FindSubject(-1, -1);
  std::int32_t width = 0;
  std::int32_t height = 0;
  Bytes mask(96 * 64 - 1, 7);
  EXPECT_EQ(lumvik_host_get_mask(photo_.get(), mask.data(), mask.size(), &width, &height),
            LUMVIK_HOST_BUFFER_TOO_SMALL);
  EXPECT_EQ(width, 96);
  EXPECT_EQ(height, 64);
  EXPECT_EQ(mask, Bytes(96 * 64 - 1, 7));
}

TEST_F(ToolsTest, TheBackgroundIsBlurredAroundTheMask) {
  lumvik_host_preview_options blurred{};
  blurred.background_blur = 60;
  const TestPreview sharp = PreviewForTest(photo_);
  EXPECT_EQ(PreviewForTest(photo_, blurred), sharp);
  FindSubject(0.25F, 0.55F);
  const Bytes mask = Mask();
  const TestPreview first = PreviewForTest(photo_, blurred);
  EXPECT_FALSE(first == sharp);
  FindSubject(0.75F, 0.4F);
  ASSERT_NE(Mask(), mask);
  EXPECT_FALSE(PreviewForTest(photo_, blurred) == first);
  EXPECT_EQ(PreviewForTest(photo_), sharp);
}

// The fractions of the brightest spot; negative if the spot is not whole.
// Of the mirrored border there may be a second one, further away than a spot is wide: none then.
cv::Point2d SpotOf(const TestPreview& preview) {
  constexpr int kMaxSide = 16;  // pixels
  int left = preview.width;
  int right = 0;
  cv::Point2d sum;
  double weights = 0;
  for (int y = 0; y < preview.height; ++y) {
    for (int x = 0; x < preview.width; ++x) {
      const int level = preview.pixels[static_cast<std::size_t>(4 * (y * preview.width + x))];
      if (level < 8) continue;
      if (x < 3 || y < 3 || x >= preview.width - 3 || y >= preview.height - 3) return {-1, -1};
      left = std::min(left, x);
      right = std::max(right, x);
      sum += cv::Point2d(x + 0.5, y + 0.5) * level;
      weights += level;
    }
  }
  if (weights == 0 || right - left > kMaxSide) return {-1, -1};
  return {sum.x / weights / preview.width, sum.y / weights / preview.height};
}

TEST(SourcePointTest, LeadsBackToAMarkedPixel) {
  constexpr double kTolerance = 0.5;  // pixels
  const cv::Size size(151, 100);
  std::mt19937 random(1);  // NOLINT(cert-msc51-cpp): a fixed sequence
  const auto between = [&](double low, double high) {
    return static_cast<float>(std::uniform_real_distribution<double>(low, high)(random));
  };
  int compared = 0;
  for (int i = 0; i < 60; ++i) {
    const cv::Rect spot(10 + static_cast<int>(random() % 125), 10 + static_cast<int>(random() % 75), 5, 5);
    cv::Mat image(size, CV_8UC3, cv::Scalar::all(0));
    image(spot) = cv::Scalar::all(255);
    Bytes bytes;
    cv::imencode(".bmp", image, bytes);
    Settings settings;
    const unsigned which = i < 7 ? 1U << i : random() % 128;  // each alone at first
    if (which & 1U) settings["flip_h"] = true;
    if (which & 2U) settings["flip_v"] = true;
    if (which & 4U) settings["rotation"] = between(-45, 45);
    if (which & 8U) settings["perspective_h"] = between(-100, 100);
    if (which & 16U) settings["perspective_v"] = between(-100, 100);
    if (which & 32U) settings["distortion"] = between(-100, 100);
    if (which & 64U) {
      settings["crop.x"] = between(0, 0.2);
      settings["crop.y"] = between(0, 0.2);
      settings["crop.w"] = between(0.5, 0.8);
      settings["crop.h"] = between(0.5, 0.8);
    }
    const PhotoHandle photo = OpenBytesForTest(bytes);
    SetForTest(photo, settings);
    const cv::Point2d rendered = SpotOf(PreviewForTest(photo));
    if (rendered.x < 0) continue;
    ++compared;
    const cv::Point2d source = SourcePoint(rendered, size, Completed(settings));
    EXPECT_NEAR(source.x * size.width, spot.x + 2.5, kTolerance) << which;
    EXPECT_NEAR(source.y * size.height, spot.y + 2.5, kTolerance) << which;
  }
  EXPECT_GE(compared, 30);
}

TEST(SourcePointTest, StaysInTheImage) {
  const cv::Point2d source = SourcePoint({0, 0}, {100, 50}, Completed({{"rotation", 45.0F}}));
  EXPECT_GE(source.x, 0);
  EXPECT_GE(source.y, 0);
  EXPECT_LE(source.x, 1);
  EXPECT_LE(source.y, 1);
}

}  // namespace
}  // namespace lumvik::host::test
