// Reading Camera Raw settings, and lumvik's own, from XMP.
#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "metadata/metadata_fixture.h"
#include "metadata/metadata_module.h"
#include "metadata/raw_facts.h"
#include "support/file_bytes.h"

namespace lumvik::host::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::StartsWith;

class CameraRawSettingsTest : public MetadataFixture {
 protected:
  std::string WriteText(const std::string& name, const std::string& text) const {
    return lumvik::test::WriteBytes(Path(name), {text.begin(), text.end()});
  }

  // Writes an XMP file whose description has these attributes and elements.
  std::string WriteXmp(const std::string& name, const std::string& attributes,
                       const std::string& elements = "") const {
    return WriteText(
        name,
        "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
        "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
        "<rdf:Description rdf:about=\"\" xmlns:crs=\"http://ns.adobe.com/camera-raw-settings/1.0/\" "
        "xmlns:tiff=\"http://ns.adobe.com/tiff/1.0/\" "
        "xmlns:other=\"https://lumvik.invalid/ns/1.0/\" " +
            attributes + ">" + elements + "</rdf:Description></rdf:RDF></x:xmpmeta>");
  }

  // A JPEG of 60 x 40 pixels, turned right, with settings in its metadata.
  std::string Photograph() const {
    const std::string path = PlainImage("in.jpg");
    const auto image = OpenedByExiv2(path);
    image->exifData()["Exif.Image.Orientation"] = std::uint16_t{6};
    image->xmpData()["Xmp.crs.Exposure2012"] = "+1.00";
    image->writeMetadata();
    return path;
  }

  static std::string ExposureOf(const CameraRawSettings& settings) {
    return settings.properties.size() == 1 ? settings.properties[0].second.at(0) : "(none)";
  }

  static Failure FailureOf(const std::string& path) {
    try {
      ReadCameraRawSettings(path);
    } catch (const Failure& failure) {
      return failure;
    }
    return {LUMVIK_HOST_OK, ""};
  }
};

TEST_F(CameraRawSettingsTest, ValuesAndListsAreRead) {
  const std::string in = WriteXmp("in.xmp", R"(crs:Exposure2012="+0.50" crs:HasCrop="True")",
                                  "<crs:ToneCurvePV2012><rdf:Seq><rdf:li>0, 0</rdf:li>"
                                  "<rdf:li>255, 240</rdf:li></rdf:Seq></crs:ToneCurvePV2012>");
  const CameraRawSettings settings = ReadCameraRawSettings(in);
  EXPECT_EQ(settings.file, in);
  EXPECT_THAT(settings.properties,
              ElementsAre(Pair("Exposure2012", ElementsAre("+0.50")), Pair("HasCrop", ElementsAre("True")),
                          Pair("ToneCurvePV2012", ElementsAre("0, 0", "255, 240"))));
  EXPECT_THAT(settings.own_properties, IsEmpty());
}

TEST_F(CameraRawSettingsTest, MembersOfStructuresAreLeftOut) {
  const CameraRawSettings settings = ReadCameraRawSettings(
      WriteXmp("in.xmp", R"(crs:Exposure2012="+0.50")",
               "<crs:Look><rdf:Description crs:Name=\"Vivid\" crs:Amount=\"1\"/></crs:Look>"));
  ASSERT_EQ(settings.properties.size(), 2U);
  EXPECT_EQ(settings.properties[0].first, "Exposure2012");
  EXPECT_EQ(settings.properties[1].first, "Look");
}

// The prefix in the file does not matter, only the name of the namespace.
TEST_F(CameraRawSettingsTest, OwnPropertiesAreReadByTheirNamespace) {
  const CameraRawSettings settings = ReadCameraRawSettings(
      WriteXmp("in.xmp",
               R"(crs:Exposure2012="+0.50" other:Settings="{&quot;exposure&quot;: 0.5}" other:Version="2")"));
  EXPECT_THAT(settings.properties, ElementsAre(Pair("Exposure2012", ElementsAre("+0.50"))));
  EXPECT_THAT(settings.own_properties, ElementsAre(Pair("Settings", ElementsAre(R"({"exposure": 0.5})")),
                                                   Pair("Version", ElementsAre("2"))));
}

TEST_F(CameraRawSettingsTest, OwnPropertiesAreEnough) {
  const CameraRawSettings settings = ReadCameraRawSettings(WriteXmp("in.xmp", R"(other:Settings="{}")"));
  EXPECT_THAT(settings.properties, IsEmpty());
  EXPECT_EQ(settings.own_properties.size(), 1U);
}

TEST_F(CameraRawSettingsTest, AnXmpFileStatesItsFrame) {
  const StoredFrame stated =
      ReadCameraRawSettings(
          WriteXmp(
              "in.xmp",
              R"(crs:HasCrop="True" tiff:ImageWidth="6000" tiff:ImageLength="4000" tiff:Orientation="8")"))
          .frame;
  EXPECT_EQ(stated.width, 6000);
  EXPECT_EQ(stated.height, 4000);
  EXPECT_EQ(stated.orientation, 8);
  const StoredFrame unknown = ReadCameraRawSettings(WriteXmp("in.XMP", R"(crs:HasCrop="True")")).frame;
  EXPECT_EQ(unknown.width, 0);
  EXPECT_EQ(unknown.height, 0);
  EXPECT_EQ(unknown.orientation, 1);
}

TEST_F(CameraRawSettingsTest, AnUnknownOrientationIsUpright) {
  for (const char* orientation : {"0", "9", "-1", "upright"}) {
    const std::string attributes =
        R"(crs:HasCrop="True" tiff:Orientation=")" + std::string(orientation) + "\"";
    EXPECT_EQ(ReadCameraRawSettings(WriteXmp("in.xmp", attributes)).frame.orientation, 1) << orientation;
  }
}

TEST_F(CameraRawSettingsTest, TheMostSpecificSidecarWins) {
  const std::string in = Photograph();
  EXPECT_EQ(ExposureOf(ReadCameraRawSettings(in)), "+1.00");
  EXPECT_EQ(ReadCameraRawSettings(in).file, in);
  const std::pair<const char*, const char*> sidecars[] = {
      {"in.XMP", "+2.00"}, {"in.xmp", "+3.00"}, {"in.jpg.xmp", "+4.00"}};
  for (const auto& [name, exposure] : sidecars) {
    WriteXmp(name, "crs:Exposure2012=\"" + std::string(exposure) + "\" tiff:ImageWidth=\"1\"");
    const CameraRawSettings settings = ReadCameraRawSettings(in);
    EXPECT_EQ(ExposureOf(settings), exposure);
    EXPECT_EQ(settings.file, Path(name));
    EXPECT_EQ(settings.frame.width, 60);
    EXPECT_EQ(settings.frame.height, 40);
    EXPECT_EQ(settings.frame.orientation, 6);
  }
}

TEST_F(CameraRawSettingsTest, TheWhiteBalanceAsShotIsThatOfTheRawFile) {
  const std::string sample = LUMVIK_SAMPLES "/sample_small.ARW";
  const WhitePoint expected = ReadRawFacts(sample)->as_shot;
  EXPECT_FALSE(std::isnan(expected.temperature));
  const auto temperature_of = [](const std::string& path) {
    return ReadCameraRawSettings(path).as_shot.temperature;
  };
  for (const char* name : {"a.xmp", "b.ARW.xmp", "c.jpg.xmp", "d.XMP"}) {
    WriteXmp(name, R"(crs:Temperature="5000")");
    EXPECT_TRUE(std::isnan(temperature_of(Path(name)))) << name;
  }
  for (const char* name : {"a.ARW", "b.ARW", "c.ARW", "d.arw"})
    std::filesystem::copy_file(sample, Path(name));
  PlainImage("a.JPG.png");
  PlainImage("a.aaa.jpg");
  std::filesystem::create_directory(Path("a.aaa"));
  for (const char* name : {"a.xmp", "b.ARW.xmp", "d.XMP", "a.ARW", "b.ARW"}) {
    EXPECT_EQ(temperature_of(Path(name)), expected.temperature) << name;
    EXPECT_EQ(ReadCameraRawSettings(Path(name)).as_shot.tint, expected.tint) << name;
  }
  EXPECT_TRUE(std::isnan(temperature_of(Path("c.jpg.xmp"))));  // that of another file
}

TEST_F(CameraRawSettingsTest, AnUnknownWhiteBalanceHasAReason) {
  const std::string unknown = "the white balance as shot is unknown: ";
  EXPECT_EQ(ReadCameraRawSettings(WriteXmp("in.xmp", R"(crs:Tint="5")")).no_as_shot,
            unknown + "there is no RAW file next to the XMP file");
  EXPECT_EQ(ReadCameraRawSettings(Photograph()).no_as_shot, unknown + "the photograph is not a RAW file");
  std::filesystem::copy_file(LUMVIK_TEST_DATA "/jpeg_thumb.dng", Path("raw.dng"));
  WriteXmp("raw.xmp", R"(crs:Tint="5")");
  for (const char* name : {"raw.xmp", "raw.dng"}) {
    EXPECT_EQ(ReadCameraRawSettings(Path(name)).no_as_shot,
              unknown + "LibRaw has no color matrix of the camera");
  }
}

TEST_F(CameraRawSettingsTest, FilesWithoutSettingsAreNotFound) {
  const std::pair<std::string, std::string> reasons[] = {
      {Path("none.xmp"), "there is no such file"},
      {Path("none.jpg"), "there is no such file"},
      {PlainImage("plain.jpg"), "it has no Camera Raw or Lightroom settings"},
      {WriteXmp("other.xmp", R"(tiff:ImageWidth="60")"), "it has no Camera Raw or Lightroom settings"},
      {WriteText("in.txt", "a text that is long enough to be looked at"),
       "it is neither an XMP file nor a photograph with metadata"},
  };
  for (const auto& [path, reason] : reasons) {
    const Failure failure = FailureOf(path);
    EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_NOT_FOUND) << path;
    EXPECT_EQ(failure.what(), "cannot read '" + path + "': " + reason);
  }
}

TEST_F(CameraRawSettingsTest, DamagedXmpIsReported) {
  const std::string whole = WriteXmp("whole.xmp", R"(crs:Exposure2012="+0.50")");
  const std::vector<std::uint8_t> bytes = lumvik::test::ReadBytes(whole);
  const std::string half(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(bytes.size() / 2));
  for (const std::string& text : {half, std::string("<x"), std::string("{}"), std::string("\0\xFF\xFE", 3)}) {
    const Failure failure = FailureOf(WriteText("in.xmp", text));
    EXPECT_EQ(failure.GetStatus(), LUMVIK_HOST_DAMAGED) << text;
    EXPECT_THAT(failure.what(), StartsWith("cannot read '" + Path("in.xmp") + "': it "));
  }
}

TEST_F(CameraRawSettingsTest, AFolderIsNoXmpFile) {
  std::filesystem::create_directory(Path("folder.xmp"));
  EXPECT_EQ(FailureOf(Path("folder.xmp")).GetStatus(), LUMVIK_HOST_INVALID_ARGUMENT);
}

TEST_F(CameraRawSettingsTest, ExifOfARawFileIsKnown) {
  const ModuleExif exif = ReadModuleExif(LUMVIK_SAMPLES "/sample_small.ARW");
  const auto source = OpenedByExiv2(LUMVIK_SAMPLES "/sample_small.ARW");
  EXPECT_EQ(exif.lens, "FE 24-105mm F4 G OSS");
  EXPECT_EQ(exif.datetime, ExifValue(*source, "Exif.Photo.DateTimeOriginal"));
  EXPECT_EQ(exif.datetime.size(), 19U);
  EXPECT_EQ(ReadModuleExif(PlainImage("in.bmp")).datetime, "");
  EXPECT_EQ(ReadModuleExif(Path("none.jpg")).lens, "");
}

}  // namespace
}  // namespace lumvik::host::test
