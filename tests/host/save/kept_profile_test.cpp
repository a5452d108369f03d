// The color profile of what is saved, and what EXIF states about its colors.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lcms2.h>

#include <array>
#include <cstdint>
#include <exiv2/exiv2.hpp>
#include <opencv2/imgcodecs.hpp>
#include <string>
#include <vector>

#include "color/color_profile.h"
#include "color/embedded_profile.h"
#include "color/profile_attachment.h"
#include "color/profile_files.h"
#include "lumvik_host.h"
#include "metadata/metadata_fixture.h"
#include "photo/test_photos.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ExifBlock;
using lumvik::test::Ifd;
using lumvik::test::ReadBytes;
using lumvik::test::WriteBytes;
using ::testing::HasSubstr;

constexpr char kColorSpaceTag[] = "Exif.Photo.ColorSpace";
constexpr char kStatesSrgb[] = "1";
constexpr char kStatesOther[] = "65535";

struct OutputKind {
  const char* name;
  lumvik_host_format format;
  int bits;
};
constexpr OutputKind kOutputKinds[] = {{"out.jpg", LUMVIK_HOST_FORMAT_JPEG, 8},
                                       {"out.png", LUMVIK_HOST_FORMAT_PNG, 8},
                                       {"deep.png", LUMVIK_HOST_FORMAT_PNG, 16},
                                       {"out.tif", LUMVIK_HOST_FORMAT_TIFF, 16}};
constexpr OutputKind kJpegOutput = kOutputKinds[0];

std::string CharsOf(const Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

std::string PhotographWith(const std::string& icc, lumvik_host_format format) {
  return AttachProfile(CharsOf(PhotoBytes(format)), format, icc);
}

// A JPEG with EXIF of a camera set to this color space.
std::string PhotographOfCamera(std::uint16_t color_space, const std::string& index) {
  ExifBlock exif;
  exif.Shorts(Ifd::kExif, 0xA001, {color_space});
  exif.Ascii(Ifd::kInteroperability, 1, index);
  return CharsOf(lumvik::test::JpegWithExif(exif.Serialize(), PhotoBytes(LUMVIK_HOST_FORMAT_JPEG)));
}

std::string MakeCmykProfile() {
  cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
  cmsSetProfileVersion(profile, 4.3);
  cmsSetDeviceClass(profile, cmsSigOutputClass);
  cmsSetColorSpace(profile, cmsSigCmykData);
  cmsSetPCS(profile, cmsSigLabData);
  return SaveProfile(profile);
}

class KeptProfileTest : public MetadataFixture {
 protected:
  PhotoHandle Open(const std::string& image, bool keep_colors) const {
    const std::string path = WriteBytes(Path("photograph"), {image.begin(), image.end()});
    lumvik_host_open_options options{};
    options.struct_size = sizeof(options);
    options.keep_colors = keep_colors ? 1 : 0;
    lumvik_host_photo* photo = nullptr;
    EXPECT_EQ(lumvik_host_open(path.c_str(), &options, &photo), LUMVIK_HOST_OK) << lumvik_host_last_error();
    return PhotoHandle(photo);
  }

  // Returns the path.
  std::string Saved(const PhotoHandle& photo, const OutputKind& kind, bool has_profile = true) const {
    lumvik_host_save_options options{};
    options.struct_size = sizeof(options);
    options.bits = kind.bits;
    options.no_profile = has_profile ? 0 : 1;
    options.overwrite = LUMVIK_HOST_OVERWRITE_ANY;
    options.copyright = "me";  // so that there is EXIF
    EXPECT_EQ(lumvik_host_save(photo.get(), Path(kind.name).c_str(), &options), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    return Path(kind.name);
  }

  static std::string ProfileIn(const std::string& path, lumvik_host_format format) {
    return FindIccProfile(CharsOf(ReadBytes(path)), format);
  }

  static std::string ColorSpaceIn(const std::string& path) {
    return ExifValue(*OpenedByExiv2(path), kColorSpaceTag);
  }

  static std::string Warnings(const PhotoHandle& photo) {
    char* warnings = nullptr;
    EXPECT_EQ(lumvik_host_get_warnings(photo.get(), &warnings), LUMVIK_HOST_OK);
    const std::string text = warnings;
    lumvik_host_free(warnings);
    return text;
  }

  const std::string wide_ = MakeRgbProfile(kP3Like);
  const std::string srgb_ = ColorProfile::Srgb().Serialize();
};

TEST_F(KeptProfileTest, KeptColorsKeepTheirProfile) {
  for (const auto format : {LUMVIK_HOST_FORMAT_JPEG, LUMVIK_HOST_FORMAT_PNG, LUMVIK_HOST_FORMAT_TIFF}) {
    const PhotoHandle photo = Open(PhotographWith(wide_, format), true);
    EXPECT_STREQ(InfoForTest(photo).profile, "P3-like");
    EXPECT_EQ(InfoForTest(photo).is_converted, 0);
    for (const OutputKind& kind : kOutputKinds) {
      const std::string path = Saved(photo, kind);
      EXPECT_EQ(ProfileIn(path, kind.format), wide_) << format << ' ' << kind.name;
      EXPECT_EQ(ColorSpaceIn(path), kStatesOther) << format << ' ' << kind.name;
    }
    EXPECT_EQ(Warnings(photo), "");
  }
}

TEST_F(KeptProfileTest, ConvertedColorsAreTaggedAsSrgb) {
  const PhotoHandle photo = Open(PhotographWith(wide_, LUMVIK_HOST_FORMAT_JPEG), false);
  for (const OutputKind& kind : kOutputKinds) {
    const std::string path = Saved(photo, kind);
    EXPECT_EQ(ProfileIn(path, kind.format), srgb_) << kind.name;
    EXPECT_EQ(ColorSpaceIn(path), kStatesSrgb) << kind.name;
  }
}

TEST_F(KeptProfileTest, NoProfileIsAttachedOnRequest) {
  for (const bool keep_colors : {false, true}) {
    const PhotoHandle photo = Open(PhotographWith(wide_, LUMVIK_HOST_FORMAT_JPEG), keep_colors);
    for (const OutputKind& kind : kOutputKinds) {
      const std::string path = Saved(photo, kind, false);
      EXPECT_FALSE(HasIccProfile(CharsOf(ReadBytes(path)), kind.format)) << kind.name;
      EXPECT_EQ(ColorSpaceIn(path), keep_colors ? kStatesOther : kStatesSrgb) << kind.name;
    }
  }
}

TEST_F(KeptProfileTest, AProfileLikeSrgbIsKeptToo) {
  const std::string icc = SaveProfile(cmsCreate_sRGBProfile());
  ASSERT_NE(icc, srgb_);
  const PhotoHandle photo = Open(PhotographWith(icc, LUMVIK_HOST_FORMAT_PNG), true);
  const std::string path = Saved(photo, kJpegOutput);
  EXPECT_EQ(ProfileIn(path, LUMVIK_HOST_FORMAT_JPEG), icc);
  EXPECT_EQ(ColorSpaceIn(path), kStatesSrgb);
}

TEST_F(KeptProfileTest, AdobeRgbOfCamerasBecomesAProfile) {
  const PhotoHandle photo = Open(PhotographOfCamera(65535, "R03"), true);
  EXPECT_STREQ(InfoForTest(photo).profile, "Adobe RGB (1998)");
  const std::string path = Saved(photo, kJpegOutput);
  EXPECT_EQ(ProfileIn(path, LUMVIK_HOST_FORMAT_JPEG), ColorProfile::AdobeRgb().Serialize());
  EXPECT_EQ(ColorSpaceIn(path), kStatesOther);
}

TEST_F(KeptProfileTest, WithoutAProfileColorsAreSrgb) {
  for (const bool keep_colors : {false, true}) {
    for (const std::string& image :
         {PhotographOfCamera(65535, "R98"), CharsOf(PhotoBytes(LUMVIK_HOST_FORMAT_PNG)),
          CharsOf(PhotoBytes(LUMVIK_HOST_FORMAT_RAW))}) {
      const PhotoHandle photo = Open(image, keep_colors);
      const std::string path = Saved(photo, kJpegOutput);
      EXPECT_EQ(ProfileIn(path, LUMVIK_HOST_FORMAT_JPEG), srgb_);
      EXPECT_EQ(ColorSpaceIn(path), kStatesSrgb);
      EXPECT_EQ(Warnings(photo), "");
    }
  }
}

TEST_F(KeptProfileTest, ProfilesThatDoNotFitAreReplacedWithAWarning) {
  const std::string why[] = {
      "it is damaged, so the colors are taken as sRGB",
      "it is for gray images, so the colors are taken as sRGB",
      "it is neither for RGB nor for gray images, so the colors are approximate",
  };
  const std::string profiles[] = {wide_.substr(0, 200), MakeGrayProfile(1.8), MakeCmykProfile()};
  for (std::size_t i = 0; i < std::size(profiles); ++i) {
    const PhotoHandle photo = Open(PhotographWith(profiles[i], LUMVIK_HOST_FORMAT_PNG), true);
    EXPECT_EQ(Warnings(photo),
              "the color profile of '" + Path("photograph") + "' was not used: " + why[i] + "\n");
    const std::string path = Saved(photo, kJpegOutput);
    EXPECT_EQ(ProfileIn(path, LUMVIK_HOST_FORMAT_JPEG), srgb_) << why[i];
    EXPECT_EQ(ColorSpaceIn(path), kStatesSrgb) << why[i];
  }
}

TEST_F(KeptProfileTest, AProfileTooLargeForAJpegIsLeftOutWithAWarning) {
  constexpr std::size_t kLargest = 255 * 65519;  // parts of a JPEG
  for (const std::size_t size : {kLargest, kLargest + 1}) {
    std::string icc = wide_;
    icc.resize(size);
    for (std::size_t i = 0; i < 4; ++i)
      icc[i] = static_cast<char>(size >> (24 - 8 * i));  // as the header states
    const PhotoHandle photo = Open(PhotographWith(icc, LUMVIK_HOST_FORMAT_TIFF), true);
    const std::string path = Saved(photo, kJpegOutput);
    EXPECT_EQ(ColorSpaceIn(path), kStatesOther) << size;
    EXPECT_EQ(ProfileIn(path, LUMVIK_HOST_FORMAT_JPEG) == icc, size == kLargest);
    EXPECT_EQ(HasIccProfile(CharsOf(ReadBytes(path)), LUMVIK_HOST_FORMAT_JPEG), size == kLargest);
    EXPECT_EQ(Warnings(photo), size == kLargest ? ""
                                                : "the color profile of '" + Path("photograph") +
                                                      "' was left out: it has 16707346 bytes, and a JPEG "
                                                      "holds at most 16707345\n");
    EXPECT_EQ(ProfileIn(Saved(photo, kOutputKinds[3]), LUMVIK_HOST_FORMAT_TIFF), icc) << size;
  }
}

TEST_F(KeptProfileTest, ReducedImagesHaveItToo) {
  const PhotoHandle photo = Open(PhotographWith(wide_, LUMVIK_HOST_FORMAT_JPEG), true);
  for (const OutputKind& kind : kOutputKinds) {
    lumvik_host_save_options options{};
    options.struct_size = sizeof(options);
    options.format = kind.format;
    options.bits = kind.bits;
    options.max_width = 40;
    std::uint8_t* data = nullptr;
    std::size_t size = 0;
    ASSERT_EQ(lumvik_host_save_bytes(photo.get(), &options, &data, &size), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    const std::string image(reinterpret_cast<const char*>(data), size);
    lumvik_host_free(data);
    EXPECT_EQ(FindIccProfile(image, kind.format), wide_) << kind.name;
  }
}

TEST_F(KeptProfileTest, CutoutsAreTaggedAsSrgb) {
  const PhotoHandle photo = Open(CharsOf(PhotoBytes(LUMVIK_HOST_FORMAT_RAW)), true);
  ASSERT_EQ(lumvik_host_find_subject(photo.get(), 0.5F, 0.5F), LUMVIK_HOST_OK) << lumvik_host_last_error();
  ASSERT_EQ(lumvik_host_save_cutout(photo.get(), Path("cutout.png").c_str(), nullptr), LUMVIK_HOST_OK)
      << lumvik_host_last_error();
  EXPECT_EQ(ProfileIn(Path("cutout.png"), LUMVIK_HOST_FORMAT_PNG), srgb_);
  lumvik_host_save_options options{};
  options.struct_size = sizeof(options);
  options.no_profile = 1;
  ASSERT_EQ(lumvik_host_save_cutout(photo.get(), Path("bare.png").c_str(), &options), LUMVIK_HOST_OK)
      << lumvik_host_last_error();
  EXPECT_FALSE(HasIccProfile(CharsOf(ReadBytes(Path("bare.png"))), LUMVIK_HOST_FORMAT_PNG));
}

}  // namespace
}  // namespace lumvik::host::test
