// The quality of RAW files, and proxies.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <thread>

#include "photo/test_photos.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

constexpr int kProxyQuality = 4;

class QualityTest : public testing::Test {
 protected:
  PhotoHandle Open(int quality, bool proxy_first) {
    lumvik_host_open_options options{};
    options.struct_size = sizeof(options);
    options.quality = quality;
    options.proxy_first = proxy_first ? 1 : 0;
    lumvik_host_photo* photo = nullptr;
    EXPECT_EQ(lumvik_host_open(path_.c_str(), &options, &photo), LUMVIK_HOST_OK) << lumvik_host_last_error();
    return PhotoHandle(photo);
  }

  lumvik::test::TempDir folder_;
  std::string path_ = lumvik::test::WriteBytes(folder_.File("a.dng"), PhotoBytes(LUMVIK_HOST_FORMAT_RAW));
};

TEST_F(QualityTest, IsSet) {
  const PhotoHandle photo = Open(1, false);
  const TestPreview full = PreviewForTest(photo);
  SetForTest(photo, {{"exposure", 1.0F}});
  EXPECT_EQ(lumvik_host_find_subject(photo.get(), -1, -1), LUMVIK_HOST_OK);
  EXPECT_EQ(lumvik_host_set_quality(photo.get(), 2), LUMVIK_HOST_OK);
  EXPECT_EQ(InfoForTest(photo).quality, 2);
  EXPECT_EQ(InfoForTest(photo).width, full.width / 2);
  const PhotoHandle opened = Open(2, false);
  SetForTest(opened, {{"exposure", 1.0F}});
  EXPECT_EQ(PreviewForTest(photo), PreviewForTest(opened));
  Bytes mask(96 * 64);
  std::int32_t side = 0;
  EXPECT_EQ(lumvik_host_get_mask(photo.get(), mask.data(), mask.size(), &side, &side), LUMVIK_HOST_NOT_FOUND);
  SetForTest(photo, {});
  EXPECT_EQ(lumvik_host_set_quality(photo.get(), 1), LUMVIK_HOST_OK);
  EXPECT_EQ(PreviewForTest(photo), full);
}

TEST_F(QualityTest, OutOfRangeIsRefused) {
  const PhotoHandle photo = Open(1, false);
  for (const int quality : {-1, 0, 5}) {
    EXPECT_EQ(lumvik_host_set_quality(photo.get(), quality), LUMVIK_HOST_INVALID_ARGUMENT);
  }
  EXPECT_EQ(InfoForTest(photo).quality, 1);
}

TEST_F(QualityTest, OtherFormatsHaveNone) {
  path_ = lumvik::test::WriteBytes(folder_.File("a.png"), PhotoBytes(LUMVIK_HOST_FORMAT_PNG));
  const PhotoHandle photo = Open(2, true);
  EXPECT_EQ(InfoForTest(photo).is_proxy, 0);
  EXPECT_EQ(lumvik_host_set_quality(photo.get(), 3), LUMVIK_HOST_OK);
  EXPECT_EQ(lumvik_host_wait_for_quality(photo.get(), 0), LUMVIK_HOST_OK);
  EXPECT_EQ(InfoForTest(photo).quality, 1);
  EXPECT_EQ(InfoForTest(photo).width, 96);
}

TEST_F(QualityTest, AProxyIsReplaced) {
  const PhotoHandle photo = Open(1, true);
  SetForTest(photo, {{"exposure", 1.0F}});
  EXPECT_EQ(lumvik_host_wait_for_quality(photo.get(), -1), LUMVIK_HOST_OK);
  EXPECT_EQ(InfoForTest(photo).quality, 1);
  EXPECT_EQ(InfoForTest(photo).is_proxy, 0);
  EXPECT_EQ(PreviewForTest(photo), EnginePreview(path_, {{"exposure", 1.0F}}));
}

TEST_F(QualityTest, AProxyIsServedMeanwhile) {
  path_ = LUMVIK_SAMPLES "/sample_small.ARW";
  const PhotoHandle photo = Open(1, true);
  const lumvik_host_photo_info info = InfoForTest(photo);
  if (info.is_proxy != 0) {  // else the load was faster
    EXPECT_EQ(info.quality, kProxyQuality);
  }
  const lumvik_host_status waited = lumvik_host_wait_for_quality(photo.get(), 0);
  EXPECT_THAT(waited, testing::AnyOf(LUMVIK_HOST_OK, LUMVIK_HOST_TIMED_OUT));
  EXPECT_EQ(lumvik_host_render(photo.get()), LUMVIK_HOST_OK);
  EXPECT_EQ(lumvik_host_wait_for_quality(photo.get(), -1), LUMVIK_HOST_OK);
  EXPECT_GT(InfoForTest(photo).width, info.quality == kProxyQuality ? info.width : info.width - 1);
}

TEST_F(QualityTest, ThatOfTheProxyNeedsNoLoad) {
  const PhotoHandle photo = Open(kProxyQuality, true);
  EXPECT_EQ(InfoForTest(photo).is_proxy, 0);
  EXPECT_EQ(lumvik_host_wait_for_quality(photo.get(), 0), LUMVIK_HOST_OK);
}

TEST_F(QualityTest, SetWhileTheProxyIsShownReplacesTheLoad) {
  path_ = LUMVIK_SAMPLES "/sample_small.ARW";
  const PhotoHandle photo = Open(1, true);
  EXPECT_EQ(lumvik_host_set_quality(photo.get(), 3), LUMVIK_HOST_OK);
  EXPECT_EQ(lumvik_host_wait_for_quality(photo.get(), 0), LUMVIK_HOST_OK);
  EXPECT_EQ(InfoForTest(photo).is_proxy, 0);
  EXPECT_EQ(InfoForTest(photo).quality, 3);
}

TEST_F(QualityTest, ClosingWhileTheProxyIsShown) {
  path_ = LUMVIK_SAMPLES "/sample_small.ARW";
  PhotoHandle photo = Open(1, true);
  lumvik_host_photo* const handle = photo.get();
  lumvik_host_status waited = LUMVIK_HOST_OK;
  std::thread waiter([&] { waited = lumvik_host_wait_for_quality(handle, -1); });
  photo.reset();
  waiter.join();
  EXPECT_THAT(waited, testing::AnyOf(LUMVIK_HOST_OK, LUMVIK_HOST_INVALID_HANDLE));
}

TEST_F(QualityTest, AFailedLoadLeavesThePhoto) {
  const PhotoHandle photo = Open(1, false);
  const TestPreview before = PreviewForTest(photo);
  std::filesystem::remove(path_);
  EXPECT_NE(lumvik_host_set_quality(photo.get(), 2), LUMVIK_HOST_OK);
  EXPECT_EQ(InfoForTest(photo).quality, 1);
  EXPECT_EQ(PreviewForTest(photo), before);
}

}  // namespace
}  // namespace lumvik::host::test
