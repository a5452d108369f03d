// When the engine renders, and which render an export writes.
#include <opencv2/imgproc.hpp>

#include "api_test.h"
#include "support/counting_allocator.h"

namespace lumvik::test {
namespace {

class RenderTest : public ApiTest {
 protected:
  // Renders the same photograph at this exposure in a new context.
  cv::Mat NeutralAt(float exposure) const {
    const ContextPtr fresh = CreateContext();
    EXPECT_EQ(lumvik_load_arw(fresh.get(), Path("neutral.png").c_str(), 1), LUMVIK_OK);
    lumvik_set_temperature(fresh.get(), 6500);
    lumvik_set_exposure(fresh.get(), exposure);
    EXPECT_EQ(lumvik_process(fresh.get()), LUMVIK_OK);
    return Exported(fresh.get());
  }
};

TEST_F(RenderTest, NeutralSettingsChangeNoSample) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Exported(), Widened(SmallPicture())));
}

TEST_F(RenderTest, DefaultSettingsChangeTheColors) {
  LoadNeutral();
  lumvik_reset_adjustments(ctx());
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_GT(cv::norm(Exported(), Widened(SmallPicture()), cv::NORM_INF), 1000);
}

TEST_F(RenderTest, WhiteBalanceIsDisabledOnlyCloseToNeutral) {
  LoadNeutral();
  const auto changes = [this](float temperature, float tint) {
    lumvik_set_temperature(ctx(), temperature);
    lumvik_set_tint(ctx(), tint);
    EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK);
    return !SameBytes(Exported(), Widened(SmallPicture()));
  };
  EXPECT_FALSE(changes(6500, 0));
  EXPECT_FALSE(changes(6500.9F, 0.09F));
  EXPECT_TRUE(changes(6501, 0));
  EXPECT_TRUE(changes(6499, 0));
  EXPECT_TRUE(changes(6500, 0.2F));
}

TEST_F(RenderTest, ProcessRendersTheCurrentSettings) {
  LoadNeutral();
  for (const float exposure : {0.5F, -1.0F, 0.0F}) {
    lumvik_set_exposure(ctx(), exposure);
    ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
    EXPECT_TRUE(SameBytes(Exported(), NeutralAt(exposure))) << exposure;
  }
  EXPECT_FALSE(SameBytes(NeutralAt(0.5F), NeutralAt(-1)));
}

TEST_F(RenderTest, EveryRenderStartsFromTheLoadedImage) {
  LoadNeutral();
  lumvik_set_exposure(ctx(), 0.5F);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  const cv::Mat once = Exported();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Exported(), once));
  EXPECT_TRUE(SameBytes(once, NeutralAt(0.5F)));
}

TEST_F(RenderTest, OrdinaryImagesAndRawFilesRender) {
  for (const std::string& path : {WritePicture("a.png"), WriteRaw("a.arw")}) {
    ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK) << LastError();
    EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK);
    EXPECT_TRUE(ctx()->render_valid);
    EXPECT_EQ(Exported().size(), cv::Size(48, 32));
  }
}

TEST_F(RenderTest, RenderingDoesNotModifyTheLoadedImage) {
  ASSERT_EQ(lumvik_load_arw(ctx(), WriteRaw("a.arw").c_str(), 1), LUMVIK_OK);
  const cv::Mat source = ctx()->source.clone();
  const cv::Mat decoded = ctx()->decoded.image.clone();
  lumvik_set_exposure(ctx(), 2);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(ctx()->source, source));
  EXPECT_TRUE(SameBytes(ctx()->decoded.image, decoded));
}

TEST_F(RenderTest, AfterASetterAnExportStillWritesTheLastRender) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_set_exposure(ctx(), 1);
  EXPECT_TRUE(SameBytes(Exported(), NeutralAt(0)));
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_TRUE(SameBytes(Exported(), NeutralAt(1)));
}

TEST_F(RenderTest, WithoutACurrentRenderEveryExportRenders) {
  LoadNeutral();
  for (const float exposure : {0.0F, 1.0F, -1.0F}) {
    lumvik_set_exposure(ctx(), exposure);
    EXPECT_TRUE(SameBytes(Exported(), NeutralAt(exposure))) << exposure;
    EXPECT_FALSE(ctx()->render_valid);
  }
}

TEST_F(RenderTest, AResetMakesTheRenderStale) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_reset_adjustments(ctx());
  EXPECT_FALSE(ctx()->render_valid);
  lumvik_set_temperature(ctx(), 6500);
  lumvik_set_exposure(ctx(), 1);
  EXPECT_TRUE(SameBytes(Exported(), NeutralAt(1)));
}

TEST_F(RenderTest, ALoadMakesTheRenderStale) {
  LoadNeutral();
  lumvik_set_exposure(ctx(), 1);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  LoadNeutral();
  EXPECT_TRUE(SameBytes(Exported(), NeutralAt(0)));
}

TEST_F(RenderTest, AFailedLoadMakesTheRenderStale) {
  LoadNeutral();
  for (const char* missing : {"missing.png", "missing.arw"}) {
    lumvik_set_exposure(ctx(), 0);
    ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
    lumvik_set_exposure(ctx(), 1);
    EXPECT_EQ(lumvik_load_arw(ctx(), Path(missing).c_str(), 1), kFailed);
    EXPECT_FALSE(ctx()->render_valid);
    EXPECT_TRUE(SameBytes(Exported(), NeutralAt(1))) << missing;
  }
}

TEST_F(RenderTest, ALoadWithoutAPathKeepsTheRender) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_set_exposure(ctx(), 1);
  EXPECT_EQ(lumvik_load_arw(ctx(), nullptr, 1), kFailed);
  EXPECT_TRUE(ctx()->render_valid);
  EXPECT_TRUE(SameBytes(Exported(), NeutralAt(0)));
}

TEST_F(RenderTest, AFailedOrThrowingExportKeepsTheRenderCurrent) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_set_exposure(ctx(), 1);
  EXPECT_EQ(lumvik_export_png(ctx(), Path("no such folder/a.png").c_str(), 8), kFailed);
  EXPECT_THROW(lumvik_export_png(ctx(), Path("a.unknown").c_str(), 8), cv::Exception);
  EXPECT_TRUE(ctx()->render_valid);
  EXPECT_TRUE(SameBytes(Exported(), NeutralAt(0)));
}

TEST_F(RenderTest, AThrowingExportLeavesAStaleRenderStale) {
  LoadNeutral();
  EXPECT_THROW(lumvik_export_png(ctx(), Path("a.unknown").c_str(), 8), cv::Exception);
  EXPECT_FALSE(ctx()->render_valid);
  lumvik_set_exposure(ctx(), 1);
  EXPECT_TRUE(SameBytes(Exported(), NeutralAt(1)));
}

TEST_F(RenderTest, UnloadingReleasesTheRender) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_unload(ctx());
  EXPECT_FALSE(ctx()->render_valid);
  EXPECT_TRUE(ctx()->rendered.empty());
  EXPECT_EQ(lumvik_process(ctx()), kFailed);
  EXPECT_EQ(LastError(), "no image loaded");
}

TEST_F(RenderTest, SettingsThatThrowKeepTheEarlierRender) {
  LoadNeutral();
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  lumvik_set_exposure(ctx(), 1);
  lumvik_set_sharpening_amount(ctx(), 50);
  for (const float radius : {0.0F, -2.0F}) {
    lumvik_set_sharpening_radius(ctx(), radius);
    const std::string before = Describe(*ctx());
    EXPECT_THROW(lumvik_process(ctx()), cv::Exception);
    EXPECT_EQ(Describe(*ctx()), before);
    EXPECT_TRUE(SameBytes(Exported(), Widened(SmallPicture()))) << "the earlier render";
  }
  lumvik_set_sharpening_radius(ctx(), 1);
  EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_FALSE(SameBytes(Exported(), Widened(SmallPicture())));
}

TEST_F(RenderTest, ACropChangesTheReportedSizeOnceRendered) {
  LoadNeutral();
  lumvik_set_crop(ctx(), 0.25F, 0.5F, 0.5F, 0.5F);
  EXPECT_EQ(lumvik_get_width(ctx()), 48);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_EQ(lumvik_get_width(ctx()), 24);
  EXPECT_EQ(lumvik_get_height(ctx()), 16);
  EXPECT_EQ(Exported().size(), cv::Size(24, 16));
}

TEST_F(RenderTest, RepeatedRendersReuseMemoryUntilThePhotographIsReplaced) {
  cv::Mat picture;
  cv::resize(SmallPicture(), picture, {1000, 700});
  const std::string path = WritePicture("large.png", picture);
  const test::CountingAllocator memory;
  ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK);
  const auto edit = [this](float rotation) {
    lumvik_set_rotation(ctx(), rotation);
    lumvik_set_distortion(ctx(), 10);
    lumvik_set_clarity(ctx(), 30);
    return lumvik_process(ctx());
  };
  ASSERT_EQ(edit(1), LUMVIK_OK);
  const size_t rendered_once = memory.Living();
  ASSERT_EQ(edit(2), LUMVIK_OK);
  const size_t rendered_twice = memory.Living();
  EXPECT_GT(rendered_twice, rendered_once + picture.total() * sizeof(cv::Vec4f)) << "a working image is kept";
  ASSERT_EQ(edit(3), LUMVIK_OK);
  EXPECT_EQ(memory.Living(), rendered_twice) << "nothing was added";

  ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK);
  EXPECT_EQ(memory.Living(), rendered_once) << "nothing is kept";
  ASSERT_EQ(edit(1), LUMVIK_OK);
  ASSERT_EQ(edit(2), LUMVIK_OK);
  lumvik_unload(ctx());
  EXPECT_EQ(memory.Living(), 0);
}

}  // namespace
}  // namespace lumvik::test
