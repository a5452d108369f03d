// Renders and what is read back from them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <opencv2/imgproc.hpp>
#include <string>

#include "photo/test_photos.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

lumvik_host_preview_options PreviewOptions() {
  lumvik_host_preview_options options{};
  options.struct_size = sizeof(options);
  return options;
}

class PreviewTest : public testing::Test {
 protected:
  cv::Mat View(const TestPreview& preview, int channels = 4) {
    return {preview.height, preview.width, CV_8UC(channels),
            const_cast<std::uint8_t*>(preview.pixels.data())};
  }

  lumvik::test::TempDir folder_;
  std::string path_ = lumvik::test::WriteBytes(folder_.File("a.png"), PhotoBytes(LUMVIK_HOST_FORMAT_PNG));
  PhotoHandle photo_ = OpenForTest(path_);
};

TEST_F(PreviewTest, IsWhatTheEngineMakesOfTheSettings) {
  const Settings many[] = {
      {},
      {{"exposure", 0.5F}, {"contrast", 20.0F}},
      {{"temperature", 5000.0F}, {"tone_curves.red", ToneCurve{{0, 0}, {0.5F, 0.7F}, {1, 1}}}},
      {},  // the curve is gone
      {{"crop.x", 0.1F}, {"crop.y", 0.2F}, {"crop.w", 0.5F}, {"crop.h", 0.5F}, {"flip_h", true}},
      {{"rotation", 5.0F}, {"hsl.red.hue", 30.0F}, {"split_toning.balance", 10.0F}},
  };
  for (const Settings& settings : many) {
    SetForTest(photo_, settings);
    EXPECT_EQ(PreviewForTest(photo_), EnginePreview(path_, settings));
  }
}

TEST_F(PreviewTest, UnchangedSettingsAreNotRenderedAgain) {
  SetForTest(photo_, {{"grain_amount", 80.0F}});
  const TestPreview first = PreviewForTest(photo_);
  lumvik_host_histogram histogram{};
  EXPECT_EQ(lumvik_host_render(photo_.get()), LUMVIK_HOST_OK);
  EXPECT_EQ(lumvik_host_get_histogram(photo_.get(), &histogram), LUMVIK_HOST_OK);
  SetForTest(photo_, {{"grain_amount", 80.0F}, {"contrast", 0.0F}});  // 0 is neutral
  EXPECT_EQ(PreviewForTest(photo_), first);
  std::uint32_t reds = 0;
  for (std::size_t i = 0; i < first.pixels.size(); i += 4) reds += first.pixels[i] == 120 ? 1 : 0;
  EXPECT_EQ(histogram.red[120], reds);
  SetForTest(photo_, {{"grain_amount", 81.0F}});
  EXPECT_FALSE(PreviewForTest(photo_) == first);
}

TEST_F(PreviewTest, HistogramCountsThePresentSettings) {
  const auto brightest = [&] {
    lumvik_host_histogram histogram{};
    EXPECT_EQ(lumvik_host_get_histogram(photo_.get(), &histogram), LUMVIK_HOST_OK);
    std::uint32_t sum = 0;
    for (const std::uint32_t count : histogram.luminance) sum += count;
    EXPECT_EQ(sum, 96U * 64U);
    int level = 255;
    while (level > 0 && histogram.luminance[level] == 0) --level;
    return level;
  };
  const int neutral = brightest();
  SetForTest(photo_, {{"exposure", -2.0F}});
  EXPECT_LT(brightest(), neutral);
}

TEST_F(PreviewTest, IsReducedToFitByAveragingAreas) {
  const TestPreview whole = PreviewForTest(photo_);
  struct Case {
    int max_width, max_height, width, height;
  };
  for (const Case& c : {Case{48, 0, 48, 32}, Case{0, 16, 24, 16}, Case{48, 16, 24, 16}, Case{10, 100, 10, 7},
                        Case{1, 0, 1, 1}, Case{0, 1, 2, 1}, Case{96, 64, 96, 64}, Case{500, 500, 96, 64},
                        Case{95, 64, 95, 63}}) {
    lumvik_host_preview_options options = PreviewOptions();
    options.max_width = c.max_width;
    options.max_height = c.max_height;
    const TestPreview preview = PreviewForTest(photo_, options);
    EXPECT_EQ(preview.width, c.width);
    EXPECT_EQ(preview.height, c.height);
    cv::Mat expected;
    cv::resize(View(whole), expected, {c.width, c.height}, 0, 0, cv::INTER_AREA);
    EXPECT_EQ(preview.pixels, lumvik::test::BytesOf(expected)) << c.max_width << " x " << c.max_height;
    options.channels = 3;
    cv::Mat rgb;
    cv::cvtColor(expected, rgb, cv::COLOR_RGBA2RGB);
    EXPECT_EQ(PreviewForTest(photo_, options).pixels, lumvik::test::BytesOf(rgb));
  }
}

TEST_F(PreviewTest, BlueMayComeFirst) {
  for (const int max_width : {0, 48}) {
    for (const int channels : {3, 4}) {
      lumvik_host_preview_options options = PreviewOptions();
      options.max_width = max_width;
      options.channels = channels;
      const TestPreview red_first = PreviewForTest(photo_, options);
      options.blue_first = 1;
      const TestPreview blue_first = PreviewForTest(photo_, options);
      cv::Mat expected;
      cv::cvtColor(View(red_first, channels), expected,
                   channels == 3 ? cv::COLOR_RGB2BGR : cv::COLOR_RGBA2BGRA);
      EXPECT_EQ(blue_first.pixels, lumvik::test::BytesOf(expected)) << max_width << ", " << channels;
      EXPECT_NE(blue_first.pixels, red_first.pixels);
    }
  }
}

TEST_F(PreviewTest, AveragesAreas) {
  const TestPreview whole = PreviewForTest(photo_);
  lumvik_host_preview_options options = PreviewOptions();
  options.max_width = 48;
  const TestPreview half = PreviewForTest(photo_, options);
  const cv::Mat view = View(whole);
  const cv::Vec4b first = View(half).at<cv::Vec4b>(0, 0);
  for (int c = 0; c < 4; ++c) {
    const int sum = view.at<cv::Vec4b>(0, 0)[c] + view.at<cv::Vec4b>(0, 1)[c] + view.at<cv::Vec4b>(1, 0)[c] +
                    view.at<cv::Vec4b>(1, 1)[c];
    EXPECT_NEAR(first[c], sum / 4.0, 0.5);
  }
}

TEST_F(PreviewTest, RowsMayBePadded) {
  constexpr std::size_t kStride = 400;
  for (const int max_width : {0, 48}) {
    for (const int channels : {3, 4}) {
      lumvik_host_preview_options options = PreviewOptions();
      options.max_width = max_width;
      options.channels = channels;
      const TestPreview packed = PreviewForTest(photo_, options);
      options.stride = kStride;
      constexpr std::uint8_t kCanary = 0xA5;
      const auto row = static_cast<std::size_t>(packed.width * channels);
      const auto height = static_cast<std::size_t>(packed.height);
      const std::size_t capacity = kStride * (height - 1) + row;
      Bytes padded(kStride * height, kCanary);
      ASSERT_EQ(
          lumvik_host_get_preview(photo_.get(), &options, padded.data(), capacity - 1, nullptr, nullptr),
          LUMVIK_HOST_BUFFER_TOO_SMALL);
      EXPECT_EQ(padded, Bytes(kStride * height, kCanary));
      ASSERT_EQ(lumvik_host_get_preview(photo_.get(), &options, padded.data(), capacity, nullptr, nullptr),
                LUMVIK_HOST_OK);
      for (std::size_t y = 0; y < height; ++y) {
        const auto start = padded.begin() + static_cast<std::ptrdiff_t>(y * kStride);
        const auto expected = packed.pixels.begin() + static_cast<std::ptrdiff_t>(y * row);
        EXPECT_TRUE(std::equal(start, start + static_cast<std::ptrdiff_t>(row), expected));
        EXPECT_EQ(std::count(start + static_cast<std::ptrdiff_t>(row), start + kStride, kCanary),
                  static_cast<std::ptrdiff_t>(kStride - row));
      }
    }
  }
}

TEST_F(PreviewTest, ATooSmallBufferLearnsTheSize) {
  std::uint8_t pixel[4] = {1, 2, 3, 4};
  std::int32_t width = 0;
  std::int32_t height = 0;
  EXPECT_EQ(lumvik_host_get_preview(photo_.get(), nullptr, pixel, sizeof(pixel), &width, &height),
            LUMVIK_HOST_BUFFER_TOO_SMALL);
  EXPECT_EQ(width, 96);
  EXPECT_EQ(height, 64);
  EXPECT_THAT(pixel, testing::ElementsAre(1, 2, 3, 4));
}

TEST_F(PreviewTest, OptionsOutOfRangeAreRefused) {
  const auto status_of = [&](const lumvik_host_preview_options& options) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    const lumvik_host_status status = lumvik_host_get_preview_size(photo_.get(), &options, &width, &height);
    EXPECT_EQ(width, 0);
    return status;
  };
  std::vector<lumvik_host_preview_options> wrong(9, PreviewOptions());
  wrong[0].max_width = -1;
  wrong[1].max_height = std::numeric_limits<int>::min();
  wrong[2].channels = 1;
  wrong[3].channels = 5;
  wrong[4].stride = 96 * 4 - 1;
  wrong[5].stride = std::numeric_limits<std::size_t>::max();
  wrong[6].background_blur = std::nanf("");
  wrong[7].background_blur = 100.5F;
  wrong[8].background_blur = -1;
  for (const lumvik_host_preview_options& options : wrong) {
    EXPECT_EQ(status_of(options), LUMVIK_HOST_INVALID_ARGUMENT);
  }
}

TEST_F(PreviewTest, FollowsTheSettingsOfTheHandle) {
  SetForTest(photo_, {{"exposure", 1.0F}});
  lumvik_host_settings* copy = nullptr;
  ASSERT_EQ(lumvik_host_get_settings(photo_.get(), &copy), LUMVIK_HOST_OK);
  const TestPreview bright = PreviewForTest(photo_);
  ASSERT_EQ(lumvik_host_set_settings(photo_.get(), nullptr), LUMVIK_HOST_OK);
  EXPECT_EQ(PreviewForTest(photo_), EnginePreview(path_, {}));
  ASSERT_EQ(lumvik_host_set_settings(photo_.get(), copy), LUMVIK_HOST_OK);
  EXPECT_EQ(PreviewForTest(photo_), bright);
}

}  // namespace
}  // namespace lumvik::host::test
