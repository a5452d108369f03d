// --profile: the colors of the written image and the profile attached to it.
#include <exiv2/exiv2.hpp>
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"
#include "host/color/profile_files.h"

namespace lumvik::test {
namespace {

class ColorProfileTest : public CommandTest {
 protected:
  // A photograph in wide colors.
  std::string WidePhotograph() const {
    const auto image = Exiv2::ImageFactory::open(Photograph("wide.jpg"));
    Exiv2::DataBuf data(reinterpret_cast<const Exiv2::byte*>(profile_.data()),
                        static_cast<long>(profile_.size()));
    image->readMetadata();
    image->setIccProfile(data);
    image->writeMetadata();
    return Path("wide.jpg");
  }

  static std::string ProfileOf(const std::string& path) {
    const auto image = Exiv2::ImageFactory::open(path);
    image->readMetadata();
    const Exiv2::DataBuf* const data = image->iccProfile();
    return {reinterpret_cast<const char*>(data->pData_), static_cast<std::size_t>(data->size_)};
  }

  static std::string DescriptionOf(const std::string& profile) {
    cmsHPROFILE opened = cmsOpenProfileFromMem(profile.data(), static_cast<cmsUInt32Number>(profile.size()));
    if (opened == nullptr) return "(no profile)";
    std::string text(100, '\0');
    text.resize(cmsGetProfileInfoASCII(opened, cmsInfoDescription, "en", "US", text.data(), 100) - 1);
    cmsCloseProfile(opened);
    return text;
  }

  const std::string profile_ = host::test::MakeRgbProfile(host::test::kProPhotoLike);
};

TEST_F(ColorProfileTest, ImagesAreTaggedAsSrgb) {
  for (const char* name : {"out.jpg", "out.png", "out.tif"}) {
    Developed(Photograph("in.png"), Path(name));
    EXPECT_NE(DescriptionOf(ProfileOf(Path(name))).find("sRGB"), std::string::npos) << name;
  }
}

TEST_F(ColorProfileTest, WideColorsAreConverted) {
  const cv::Mat converted = Developed(WidePhotograph(), Path("out.png"));
  EXPECT_NE(DescriptionOf(ProfileOf(Path("out.png"))).find("sRGB"), std::string::npos);
  EXPECT_GT(MeanDifference(converted, SmallPicture()), 5);
  const cv::Mat named = Developed(WidePhotograph(), Path("named.png"), {"--profile", "srgb"});
  EXPECT_EQ(GreatestDifference(named, converted), 0);
}

TEST_F(ColorProfileTest, KeepNeitherConvertsNorDropsTheProfile) {
  const cv::Mat kept = Developed(WidePhotograph(), Path("out.png"), {"--profile", "keep"});
  EXPECT_LT(MeanDifference(kept, SmallPicture()), 2);
  EXPECT_EQ(ProfileOf(Path("out.png")), profile_);
}

TEST_F(ColorProfileTest, NoneConvertsWithoutAProfile) {
  const cv::Mat converted = Developed(WidePhotograph(), Path("srgb.png"));
  const cv::Mat bare = Developed(WidePhotograph(), Path("out.png"), {"--profile", "none"});
  EXPECT_EQ(GreatestDifference(bare, converted), 0);
  EXPECT_EQ(ProfileOf(Path("out.png")), "");
}

TEST_F(ColorProfileTest, OtherNamesAreRefused) {
  ExpectRefusal(Develop(Photograph("in.png"), Path("out.png"), {"--profile", "adobe"}), kUsage,
                "--profile: 'adobe' is not srgb, keep or none");
}

}  // namespace
}  // namespace lumvik::test
