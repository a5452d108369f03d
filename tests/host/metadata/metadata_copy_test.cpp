// Copying metadata to developed images, in each format.
#include <gmock/gmock.h>

#include <cstdint>
#include <fstream>
#include <opencv2/imgcodecs.hpp>
#include <thread>
#include <vector>

#include "base/failure.h"
#include "metadata/metadata_fixture.h"
#include "metadata/metadata_module.h"
#include "support/file_bytes.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ReadBytes;
using lumvik::test::WriteBytes;

const std::string kArw = LUMVIK_SAMPLES "/sample_small.ARW";
const std::string kDng = LUMVIK_TEST_DATA "/jpeg_thumb.dng";
const std::string kTower = LUMVIK_TEST_DATA "/tower_orientation8.jpg";

constexpr const char* kTagsOfTheShot[] = {"Exif.Image.Make",
                                          "Exif.Image.Model",
                                          "Exif.Image.DateTime",
                                          "Exif.Photo.ExposureTime",
                                          "Exif.Photo.FNumber",
                                          "Exif.Photo.ISOSpeedRatings",
                                          "Exif.Photo.FocalLength",
                                          "Exif.Photo.DateTimeOriginal",
                                          "Exif.Photo.LensModel",
                                          "Exif.GPSInfo.GPSLatitude",
                                          "Exif.GPSInfo.GPSLongitudeRef",
                                          "Exif.GPSInfo.GPSLongitude"};

void CopyWholeForTest(const std::string& photograph, const std::string& image,
                      const MetadataOptions& options = {}) {
  EXPECT_THAT(CopyMetadataForTest(photograph, image, options), ::testing::IsEmpty());
}

// By extension.
class MetadataCopyTest : public MetadataFixture, public ::testing::WithParamInterface<const char*> {
 protected:
  // A fresh image with the metadata of a photograph.
  std::unique_ptr<Exiv2::Image> CopiedFrom(const std::string& photograph,
                                           const MetadataOptions& options = {}) const {
    CopyWholeForTest(photograph, output, options);
    return OpenedByExiv2(output);
  }

  // A JPEG with the author in EXIF, IPTC and XMP, and with GPS data.
  std::string SignedPhotograph() const {
    const std::string path = PlainImage("in.jpg");
    const auto image = OpenedByExiv2(path);
    image->exifData()["Exif.Image.Artist"] = "Ada";
    image->exifData()["Exif.Image.Copyright"] = "(c) Ada";
    image->exifData()["Exif.Photo.SubjectArea"] = "30 20";
    image->exifData()["Exif.GPSInfo.GPSLatitudeRef"] = "N";
    image->exifData()["Exif.GPSInfo.GPSLatitude"] = "48/1 51/1 0/1";
    image->iptcData()["Iptc.Application2.Copyright"] = std::string("(c) Ada");
    image->xmpData()["Xmp.dc.rights"] = "lang=\"x-default\" (c) Ada";
    image->xmpData()["Xmp.dc.rights"] = "lang=\"fr\" (c) Ada, en France";
    image->xmpData()["Xmp.dc.format"] = "image/x-other";
    image->xmpData()["Xmp.xmp.Rating"] = "4";
    image->xmpData()["Xmp.exif.GPSLatitude"] = "48,51.0N";
    image->xmpData()["Xmp.crs.Exposure2012"] = "+1.00";
    image->xmpData()["Xmp.tiff.Orientation"] = "8";
    image->writeMetadata();
    return path;
  }

  const std::string output = PlainImage(std::string("out") + GetParam());
};
INSTANTIATE_TEST_SUITE_P(Formats, MetadataCopyTest, ::testing::Values(".jpg", ".png", ".tif"),
                         [](const auto& format) { return std::string(format.param + 1); });

TEST_P(MetadataCopyTest, ARawFilePassesItOn) {
  const auto source = OpenedByExiv2(kArw);
  const auto image = CopiedFrom(kArw);
  for (const char* tag : kTagsOfTheShot) {
    EXPECT_NE(ExifValue(*source, tag), "(none)") << tag;
    EXPECT_EQ(ExifValue(*image, tag), ExifValue(*source, tag)) << tag;
  }
  EXPECT_EQ(ExifValue(*image, "Exif.Image.Make"), "SONY");
  EXPECT_EQ(ExifValue(*image, "Exif.Photo.LensModel"), "FE 24-105mm F4 G OSS");
}

TEST_P(MetadataCopyTest, SizeAndOrientationAreThoseOfTheImage) {
  const auto image = CopiedFrom(kTower);
  EXPECT_EQ(ExifValue(*OpenedByExiv2(kTower), "Exif.Image.Orientation"), "8");
  EXPECT_EQ(ExifValue(*image, "Exif.Image.Orientation"), "1");
  EXPECT_EQ(ExifValue(*image, "Exif.Photo.PixelXDimension"), "60");
  EXPECT_EQ(ExifValue(*image, "Exif.Photo.PixelYDimension"), "40");
}

TEST_P(MetadataCopyTest, ColorSpaceIsThatOfTheImage) {
  const std::string in = PlainImage("in.jpg");
  const auto photograph = OpenedByExiv2(in);
  photograph->exifData()["Exif.Photo.ColorSpace"] = std::uint16_t{2};
  photograph->writeMetadata();
  EXPECT_EQ(ExifValue(*CopiedFrom(in), "Exif.Photo.ColorSpace"), "1");
  MetadataOptions options;
  options.is_srgb = false;
  EXPECT_EQ(ExifValue(*CopiedFrom(in, options), "Exif.Photo.ColorSpace"), "65535");
}

TEST_P(MetadataCopyTest, DataAboutTheOriginalFileIsDropped) {
  for (const std::string& photograph : {kArw, kDng, kTower}) {
    ASSERT_FALSE(OpenedByExiv2(photograph)->exifData().empty());
    const auto image = CopiedFrom(photograph);
    EXPECT_EQ(ExifValue(*image, "Exif.Photo.MakerNote"), "(none)");
    EXPECT_EQ(ExifValue(*image, "Exif.Image.DNGVersion"), "(none)");
    for (const char* group : {"Thumbnail", "SubImage", "Sony", "Canon", "MakerNote", "Iop"}) {
      EXPECT_EQ(TagsInGroup(*image, group), 0) << group << " of " << photograph;
    }
    EXPECT_EQ(Exiv2::ExifThumbC(image->exifData()).copy().size_, 0);
  }
}

// Adding metadata must preserve all pixels, although it moves those of a TIFF.
TEST_P(MetadataCopyTest, PixelsAreUnaffected) {
  const cv::Mat before = cv::imread(output, cv::IMREAD_UNCHANGED);
  const auto bytes = ReadBytes(output);
  CopyWholeForTest(kArw, output);
  EXPECT_NE(ReadBytes(output), bytes);
  const cv::Mat after = cv::imread(output, cv::IMREAD_UNCHANGED);
  ASSERT_EQ(after.size(), before.size());
  EXPECT_EQ(cv::norm(before, after, cv::NORM_INF), 0);
  EXPECT_GT(cv::norm(before), 0);
}

TEST_P(MetadataCopyTest, TheAuthorIsKeptInExifIptcAndXmp) {
  const auto image = CopiedFrom(SignedPhotograph());
  EXPECT_EQ(ExifValue(*image, "Exif.Image.Artist"), "Ada");
  EXPECT_EQ(ExifValue(*image, "Exif.Image.Copyright"), "(c) Ada");
  EXPECT_EQ(ExifValue(*image, "Exif.Photo.SubjectArea"), "(none)");
  EXPECT_EQ(IptcValue(*image, "Iptc.Application2.Copyright"), "(c) Ada");
  EXPECT_THAT(XmpValue(*image, "Xmp.dc.rights"), ::testing::HasSubstr("(c) Ada, en France"));
  EXPECT_EQ(XmpValue(*image, "Xmp.xmp.Rating"), "4");
  EXPECT_EQ(XmpValue(*image, "Xmp.exif.GPSLatitude"), "48,51.0N");
  for (const char* key : {"Xmp.dc.format", "Xmp.crs.Exposure2012", "Xmp.tiff.Orientation"}) {
    EXPECT_EQ(XmpValue(*image, key), "(none)") << key;
  }
}

TEST_P(MetadataCopyTest, ThePositionMayBeLeftOut) {
  MetadataOptions options;
  options.keep_position = false;
  for (const std::string& photograph : {kArw, SignedPhotograph()}) {
    ASSERT_GT(TagsInGroup(*OpenedByExiv2(photograph), "GPSInfo"), 0);
    PlainImage("out" + std::string(GetParam()));
    const auto image = CopiedFrom(photograph, options);
    EXPECT_EQ(TagsInGroup(*image, "GPSInfo"), 0);
    EXPECT_EQ(ExifValue(*image, "Exif.Image.GPSTag"), "(none)");
    EXPECT_EQ(XmpValue(*image, "Xmp.exif.GPSLatitude"), "(none)");
    EXPECT_EQ(ExifValue(*image, "Exif.Image.Orientation"), "1");
  }
}

TEST_P(MetadataCopyTest, ANewCopyrightReplacesEveryOldOne) {
  MetadataOptions options;
  options.copyright = "© Grace";
  const auto image = CopiedFrom(SignedPhotograph(), options);
  EXPECT_EQ(ExifValue(*image, "Exif.Image.Copyright"), "© Grace");
  EXPECT_EQ(XmpValue(*image, "Xmp.dc.rights"), "lang=\"x-default\" © Grace");
  EXPECT_EQ(IptcValue(*image, "Iptc.Application2.Copyright"), "© Grace");
  EXPECT_EQ(ExifValue(*image, "Exif.Image.Artist"), "Ada");
}

TEST_P(MetadataCopyTest, ACopyrightNeedsNoMetadataInThePhotograph) {
  MetadataOptions options;
  options.copyright = "(c) Grace";
  for (const char* name : {"in.bmp", "in.jpg"}) {
    PlainImage("out" + std::string(GetParam()));
    const auto image = CopiedFrom(PlainImage(name), options);
    EXPECT_EQ(ExifValue(*image, "Exif.Image.Copyright"), "(c) Grace");
    EXPECT_EQ(XmpValue(*image, "Xmp.dc.rights"), "lang=\"x-default\" (c) Grace");
    EXPECT_TRUE(image->iptcData().empty());
  }
}

// Formats unknown to exiv2 have no metadata, which is not an error.
TEST_P(MetadataCopyTest, APhotographWithoutMetadataChangesNothing) {
  const auto bytes = ReadBytes(output);
  for (const char* name : {"in.bmp", "in.jpg"}) {
    CopyWholeForTest(PlainImage(name), output);
    EXPECT_EQ(ReadBytes(output), bytes) << name;
  }
}

// The lens of an old camera, stored as a number in the maker note.
TEST_P(MetadataCopyTest, ALensFromTheMakerNoteIsNamed) {
  const std::string in = PlainImage("in.jpg");
  const auto photograph = OpenedByExiv2(in);
  photograph->exifData()["Exif.Image.Make"] = "Canon";
  photograph->exifData()["Exif.Image.Model"] = "Canon EOS 5D Mark III";
  photograph->exifData()["Exif.CanonCs.LensType"] = std::uint16_t{198};
  photograph->exifData()["Exif.CanonCs.Lens"] = "50 50 1";
  photograph->writeMetadata();
  EXPECT_EQ(ExifValue(*CopiedFrom(in), "Exif.Photo.LensModel"), "Canon EF 50mm f/1.4 USM");
  EXPECT_EQ(ReadModuleExif(in).lens, "Canon EF 50mm f/1.4 USM");
}

class MetadataCopyFailureTest : public MetadataFixture {
 protected:
  // The failure of copying the metadata of a photograph to a fresh JPEG, which it leaves alone.
  Failure FailureOf(const std::string& photograph) const {
    const std::string output = PlainImage("out.jpg");
    const auto bytes = ReadBytes(output);
    try {
      CopyWholeForTest(photograph, output);
    } catch (const Failure& failure) {
      EXPECT_EQ(ReadBytes(output), bytes);
      return failure;
    }
    return {LUMVIK_HOST_OK, ""};
  }
};

TEST_F(MetadataCopyFailureTest, AMissingPhotographIsReported) {
  EXPECT_EQ(FailureOf(Path("none.jpg")).GetStatus(), LUMVIK_HOST_NOT_FOUND);
}

TEST_F(MetadataCopyFailureTest, ThreadsDoNotDisturbEachOther) {
  constexpr int kThreads = 4;
  constexpr int kCopies = 20;
  std::vector<std::thread> threads;
  std::vector<std::string> outputs;
  for (int i = 0; i < kThreads; ++i) outputs.push_back(PlainImage("out" + std::to_string(i) + ".jpg"));
  for (const std::string& output : outputs) {
    threads.emplace_back([&output] {
      for (int copy = 0; copy < kCopies; ++copy) CopyWholeForTest(kArw, output);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const std::string& output : outputs) {
    EXPECT_EQ(ExifValue(*OpenedByExiv2(output), "Exif.Image.Make"), "SONY");
  }
}

}  // namespace
}  // namespace lumvik::host::test
