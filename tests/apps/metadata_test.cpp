// Metadata of developed images in each format.
#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"
#include "exif_file.h"

namespace lumvik::test {
namespace {

const std::string kDng = LUMVIK_TEST_DATA "/jpeg_thumb.dng";

constexpr const char* kCameraTags[] = {"Exif.Image.Make",
                                       "Exif.Image.Model",
                                       "Exif.Image.DateTime",
                                       "Exif.Photo.ExposureTime",
                                       "Exif.Photo.FNumber",
                                       "Exif.Photo.ISOSpeedRatings",
                                       "Exif.Photo.DateTimeOriginal",
                                       "Exif.Photo.FocalLength",
                                       "Exif.Photo.LensModel"};
constexpr const char* kGpsTags[] = {"Exif.GPSInfo.GPSLatitudeRef", "Exif.GPSInfo.GPSLatitude",
                                    "Exif.GPSInfo.GPSLongitudeRef", "Exif.GPSInfo.GPSLongitude"};

template <typename Tags>
void ExpectSameTags(const Exiv2::ExifData& actual, const Exiv2::ExifData& expected, const Tags& tags) {
  for (const char* tag : tags) {
    EXPECT_NE(TagValue(expected, tag), "(none)") << tag;
    EXPECT_EQ(TagValue(actual, tag), TagValue(expected, tag)) << tag;
  }
}

int CountOfGroup(const Exiv2::ExifData& exif, const std::string& group) {
  return static_cast<int>(std::count_if(exif.begin(), exif.end(), [&](const Exiv2::Exifdatum& tag) {
    return tag.groupName().rfind(group, 0) == 0;
  }));
}

std::string XmpValue(const Exiv2::XmpData& xmp, const std::string& key) {
  const auto entry = xmp.findKey(Exiv2::XmpKey(key));
  return entry == xmp.end() ? "(none)" : entry->toString();
}

// A JPEG with the author in EXIF, IPTC and XMP, and with GPS data.
std::string SignedPhotograph(const std::string& path) {
  const auto image = Exiv2::ImageFactory::open(path);
  image->exifData()["Exif.Image.Artist"] = "Ada";
  image->exifData()["Exif.Image.Copyright"] = "(c) Ada";
  image->exifData()["Exif.Photo.SubjectArea"] = "30 20";
  image->exifData()["Exif.GPSInfo.GPSLatitudeRef"] = "N";
  image->exifData()["Exif.GPSInfo.GPSLatitude"] = "48/1 51/1 0/1";
  image->iptcData()["Iptc.Application2.Copyright"] = std::string("(c) Ada");
  image->xmpData()["Xmp.dc.rights"] = "lang=\"x-default\" (c) Ada";
  image->xmpData()["Xmp.dc.format"] = "image/x-other";
  image->xmpData()["Xmp.xmp.Rating"] = "4";
  image->xmpData()["Xmp.exif.GPSLatitude"] = "48,51.0N";
  image->xmpData()["Xmp.crs.Exposure2012"] = "+1.00";
  image->xmpData()["Xmp.tiff.Orientation"] = "8";
  image->writeMetadata();
  return path;
}

// By file extension.
class MetadataTest : public CommandTest, public ::testing::WithParamInterface<const char*> {
 protected:
  // Develops a photograph to the format and returns the file with its metadata.
  auto DevelopedFile(const std::string& input, const std::vector<std::string>& options = {}) const {
    picture = Developed(input, output, options);
    auto file = Exiv2::ImageFactory::open(output);
    file->readMetadata();
    return file;
  }

  const std::string output = Path(std::string("out") + GetParam());
  mutable cv::Mat picture;
};
INSTANTIATE_TEST_SUITE_P(Formats, MetadataTest, ::testing::Values(".jpg", ".png", ".tif"),
                         [](const auto& format) { return std::string(format.param + 1); });

TEST_P(MetadataTest, ARawFilePassesItOn) {
  const auto file = DevelopedFile(kRawSample, {"--quality", "4"});
  const Exiv2::ExifData source = ReadExif(kRawSample);
  ExpectSameTags(file->exifData(), source, kCameraTags);
  ExpectSameTags(file->exifData(), source, kGpsTags);
  EXPECT_EQ(TagValue(file->exifData(), "Exif.Image.Make"), "SONY");
  EXPECT_EQ(TagValue(file->exifData(), "Exif.Photo.LensModel"), "FE 24-105mm F4 G OSS");
}

TEST_P(MetadataTest, SizeAndOrientationAreThoseOfTheOutput) {
  const auto file = DevelopedFile(kTower, {"--crop", "0.25,0.25,0.5,0.5"});
  ASSERT_EQ(picture.size(), cv::Size(1136, 852));
  EXPECT_EQ(TagValue(file->exifData(), "Exif.Image.Orientation"), "1");
  EXPECT_EQ(TagValue(file->exifData(), "Exif.Photo.PixelXDimension"), "1136");
  EXPECT_EQ(TagValue(file->exifData(), "Exif.Photo.PixelYDimension"), "852");
}

TEST_P(MetadataTest, DataAboutTheOriginalFileIsDropped) {
  for (const std::string& photograph : {kRawSample, kDng, kTower}) {
    ASSERT_FALSE(ReadExif(photograph).empty());
    const auto file = DevelopedFile(photograph, {"--quality", "4"});
    const Exiv2::ExifData& exif = file->exifData();
    EXPECT_EQ(TagValue(exif, "Exif.Photo.MakerNote"), "(none)");
    EXPECT_EQ(TagValue(exif, "Exif.Image.DNGVersion"), "(none)");
    for (const char* group : {"Thumbnail", "SubImage", "Sony", "Canon", "MakerNote", "Iop"}) {
      EXPECT_EQ(CountOfGroup(exif, group), 0) << group << " of " << photograph;
    }
    EXPECT_EQ(Exiv2::ExifThumbC(exif).copy().size_, 0);
  }
}

// Adding metadata must preserve all pixels, although it moves those of a TIFF.
TEST_P(MetadataTest, PixelsAreUnaffected) {
  DevelopedFile(kRawSample, {"--quality", "4"});
  const cv::Mat with = picture;
  DevelopedFile(kRawSample, {"--quality", "4", "--no-exif"});
  ASSERT_EQ(with.size(), picture.size());
  EXPECT_EQ(GreatestDifference(with, picture), 0);
  EXPECT_GT(cv::norm(with), 0);
}

TEST_P(MetadataTest, TheAuthorIsKeptInExifIptcAndXmp) {
  const auto file = DevelopedFile(SignedPhotograph(Photograph("in.jpg")));
  EXPECT_EQ(TagValue(file->exifData(), "Exif.Image.Artist"), "Ada");
  EXPECT_EQ(TagValue(file->exifData(), "Exif.Image.Copyright"), "(c) Ada");
  EXPECT_EQ(TagValue(file->exifData(), "Exif.Photo.SubjectArea"), "(none)");
  const auto iptc = file->iptcData().findKey(Exiv2::IptcKey("Iptc.Application2.Copyright"));
  ASSERT_NE(iptc, file->iptcData().end());
  EXPECT_EQ(iptc->toString(), "(c) Ada");
  EXPECT_EQ(XmpValue(file->xmpData(), "Xmp.dc.rights"), "lang=\"x-default\" (c) Ada");
  EXPECT_EQ(XmpValue(file->xmpData(), "Xmp.xmp.Rating"), "4");
  EXPECT_EQ(XmpValue(file->xmpData(), "Xmp.exif.GPSLatitude"), "48,51.0N");
  for (const char* key : {"Xmp.dc.format", "Xmp.crs.Exposure2012", "Xmp.tiff.Orientation"}) {
    EXPECT_EQ(XmpValue(file->xmpData(), key), "(none)") << key;
  }
}

TEST_P(MetadataTest, StripGpsDropsTheLocation) {
  for (const std::string& photograph : {kRawSample, SignedPhotograph(Photograph("in.jpg"))}) {
    ASSERT_GT(CountOfGroup(ReadExif(photograph), "GPSInfo"), 0);
    const auto file = DevelopedFile(photograph, {"--quality", "4", "--strip-gps"});
    EXPECT_EQ(CountOfGroup(file->exifData(), "GPSInfo"), 0);
    EXPECT_EQ(TagValue(file->exifData(), "Exif.Image.GPSTag"), "(none)");
    EXPECT_EQ(XmpValue(file->xmpData(), "Xmp.exif.GPSLatitude"), "(none)");
    EXPECT_NE(TagValue(file->exifData(), "Exif.Image.Orientation"), "(none)");
    EXPECT_EQ(ReadFile(output).find("48,51.0N"), std::string::npos);
  }
}

TEST_P(MetadataTest, NoExifDropsEverything) {
  const auto file = DevelopedFile(SignedPhotograph(Photograph("in.jpg")), {"--no-exif"});
  EXPECT_EQ(TagValue(file->exifData(), "Exif.Image.Artist"), "(none)");
  EXPECT_EQ(CountOfGroup(file->exifData(), "Photo") + CountOfGroup(file->exifData(), "GPSInfo"), 0);
  EXPECT_TRUE(file->iptcData().empty());
  for (const Exiv2::Xmpdatum& property : file->xmpData()) {
    EXPECT_EQ(property.groupName(), "lumvik") << "only the mark is left";
  }
}

// Formats unknown to exiv2 have no metadata, which is not an error.
TEST_P(MetadataTest, FormatsWithoutMetadataAreFine) {
  const std::string in = Photograph("in.bmp");
  DevelopedFile(in);
  const std::string with = PixelsOf(output);
  DevelopedFile(in, {"--no-exif"});
  EXPECT_EQ(PixelsOf(output), with);
}

// The lens of an old camera, stored as a number in the maker note.
TEST_P(MetadataTest, ALensFromTheMakerNoteIsNamed) {
  const std::string in = Photograph("in.jpg");
  Exiv2::ExifData exif;
  exif["Exif.Image.Make"] = "Canon";
  exif["Exif.Image.Model"] = "Canon EOS 5D Mark III";
  exif["Exif.CanonCs.LensType"] = std::uint16_t{198};
  exif["Exif.CanonCs.Lens"] = "50 50 1";
  WriteExif(in, exif);
  EXPECT_EQ(TagValue(DevelopedFile(in)->exifData(), "Exif.Photo.LensModel"), "Canon EF 50mm f/1.4 USM");
}

using MetadataFailureTest = CommandTest;

// A photograph whose EXIF was overwritten; the image is whole.
std::string WithBrokenExif(const std::string& path) {
  Exiv2::ExifData exif;
  exif["Exif.Image.Make"] = "Camera";
  WriteExif(path, exif);
  std::string bytes = ReadFile(path);
  const std::size_t header = bytes.find(std::string("Exif\0\0", 6));
  EXPECT_NE(header, std::string::npos);
  bytes.replace(header + 6, 8, "garbage!");
  WriteFile(path, bytes);
  return path;
}

TEST_F(MetadataFailureTest, BrokenMetadataIsLeftOutWithAWarning) {
  const std::string in = WithBrokenExif(Photograph("in.jpg"));
  const ProcessResult result = Develop(in, Path("out.jpg"));
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.err.rfind("lumvik: warning: ", 0), 0U) << result.err;
  EXPECT_NE(result.err.find(in), std::string::npos) << result.err;
  EXPECT_EQ(cv::imread(Path("out.jpg")).size(), cv::Size(60, 40));
  const ProcessResult quiet = Develop(in, Path("out.jpg"), {"--no-exif"});
  EXPECT_EQ(quiet.err, "");
}

TEST_F(MetadataFailureTest, WarningsAreInTheJson) {
  const std::string in = WithBrokenExif(Photograph("in.jpg"));
  const ProcessResult result = Develop(in, Path("out.jpg"), {"--json"});
  const auto json = nlohmann::json::parse(result.out);
  ASSERT_EQ(json.at("warnings").size(), 1U);
  EXPECT_EQ(result.err, "lumvik: warning: " + json.at("warnings").at(0).get<std::string>() + "\n");
}

// The checksum tells that the file is not what was written.
TEST_F(MetadataFailureTest, AMetadataChunkWithAWrongChecksumIsDamage) {
  Exiv2::ExifData exif;
  exif["Exif.Image.Make"] = "Camera";
  const std::string in = Photograph("in.png");
  WriteExif(in, exif);
  std::string bytes = ReadFile(in);
  const std::size_t profile = bytes.find("Raw profile type exif");
  ASSERT_NE(profile, std::string::npos);
  bytes[profile + 30] ^= 0x55;  // within the compressed data
  WriteFile(in, bytes);
  ExpectRefusal(Develop(in, Path("out.jpg")), kDamaged, "wrong checksum of zTXt");
  EXPECT_FALSE(std::filesystem::exists(Path("out.jpg")));
  EXPECT_EQ(Develop(in, Path("out.jpg"), {"--accept-damaged"}).status, kSuccess);
}

// PNG allows a description of any length, a JPEG segment does not.
TEST_F(MetadataFailureTest, TextTooLongForJpegIsLeftOutWithAWarning) {
  const std::string in = Photograph("in.png");
  const auto image = Exiv2::ImageFactory::open(in);
  image->xmpData()["Xmp.dc.title"] = std::string(70000, 't');
  image->writeMetadata();
  const ProcessResult result = Develop(in, Path("out.jpg"));
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_NE(result.err.find("lumvik: warning: Xmp.dc.title of '" + in + "' was left out"), std::string::npos)
      << result.err;
  EXPECT_EQ(Develop(in, Path("out.jpg"), {"--no-exif"}).err, "");
  EXPECT_EQ(Develop(in, Path("out.png")).err, "");
}

}  // namespace
}  // namespace lumvik::test
