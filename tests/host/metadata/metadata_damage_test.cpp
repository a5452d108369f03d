// Damaged metadata fails neither opening nor saving: what is sound is kept, and a warning states the rest.
#include <gmock/gmock.h>
#include <zlib.h>

#include <cstdint>
#include <opencv2/imgcodecs.hpp>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "files/png_chunks.h"
#include "lumvik_host.h"
#include "metadata/metadata_fixture.h"
#include "photo/test_photos.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/raw_writer.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ExifBlock;
using lumvik::test::Ifd;
using lumvik::test::ReadBytes;
using lumvik::test::TiffFormat;
using lumvik::test::WriteBytes;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr std::uint8_t kApp1 = 0xE1;
constexpr std::uint8_t kApp2 = 0xE2;
constexpr std::uint8_t kApp13 = 0xED;
const std::string kXmpName("http://ns.adobe.com/xap/1.0/\0", 29);
const std::string kBrokenXmp = R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF>)";

// GoogleTest's own matcher knows few expressions on Windows.
MATCHER_P(MatchesLines, expression, "") {
  return std::regex_match(arg, std::regex(expression));
}

std::string TextOf(const Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

std::string Segment(std::uint8_t marker, const std::string& payload) {
  const std::size_t length = payload.size() + 2;
  return "\xFF" +
         std::string{static_cast<char>(marker), static_cast<char>(length >> 8U),
                     static_cast<char>(length & 0xFFU)} +
         payload;
}

std::string JpegWithSegments(const std::string& segments) {
  std::string jpeg = TextOf(lumvik::test::PlainJpeg());
  return jpeg.insert(2, segments);
}

std::string SoundExif() {
  return Segment(kApp1, TextOf(ExifBlock().Ascii(Ifd::kZero, 0x010F, "Camera").Serialize()));
}

std::string XmpPacket(const std::string& properties) {
  return R"(<x:xmpmeta xmlns:x="adobe:ns:meta/"><rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#">)"
         R"(<rdf:Description rdf:about="" xmlns:dc="http://purl.org/dc/elements/1.1/" )"
         R"(xmlns:xmp="http://ns.adobe.com/xap/1.0/">)" +
         properties + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

std::string SoundXmp() {
  return Segment(kApp1, kXmpName + XmpPacket("<xmp:Rating>4</xmp:Rating>"));
}

// A PNG with chunks after its header.
std::string PngWithChunks(const std::string& chunks) {
  std::string png = TextOf(PhotoBytes(LUMVIK_HOST_FORMAT_PNG));
  constexpr std::size_t kHeaderEnd = 33;
  return png.insert(kHeaderEnd, chunks);
}

class MetadataDamageTest : public MetadataFixture {
 protected:
  // Opens the file, saves it in every format, and returns the warnings of the last save.
  std::string WarningsOf(const std::string& content, const std::string& name = "in") {
    const std::string path = WriteBytes(Path(name), Bytes(content.begin(), content.end()));
    const PhotoHandle photo = OpenForTest(path);
    std::string warnings;
    for (const char* output : {"out.png", "out.tif", "out.jpg"}) {
      EXPECT_EQ(Save(photo, output), LUMVIK_HOST_OK) << lumvik_host_last_error();
      const std::string present = Warnings(photo);
      EXPECT_TRUE(warnings.empty() || present == warnings) << present;
      warnings = present;
    }
    saved = OpenedByExiv2(Path("out.jpg"));
    return warnings;
  }

  lumvik_host_status Save(const PhotoHandle& photo, const std::string& name, int metadata = 0) const {
    lumvik_host_save_options options{};
    options.struct_size = sizeof(options);
    options.overwrite = LUMVIK_HOST_OVERWRITE_ANY;
    options.metadata = metadata;
    return lumvik_host_save(photo.get(), Path(name).c_str(), &options);
  }

  static std::string Warnings(const PhotoHandle& photo) {
    char* warnings = nullptr;
    EXPECT_EQ(lumvik_host_get_warnings(photo.get(), &warnings), LUMVIK_HOST_OK);
    const std::string text = warnings;
    lumvik_host_free(warnings);
    return text;
  }

  std::unique_ptr<Exiv2::Image> saved;
};

TEST_F(MetadataDamageTest, SoundMetadataGivesNoWarning) {
  EXPECT_EQ(WarningsOf(JpegWithSegments(SoundExif() + SoundXmp())), "");
  EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "Camera");
  EXPECT_EQ(XmpValue(*saved, "Xmp.xmp.Rating"), "4");
  for (const char* sample :
       {LUMVIK_SAMPLES "/sample_small.ARW", LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg"}) {
    EXPECT_EQ(WarningsOf(TextOf(ReadBytes(sample))), "");
  }
}

TEST_F(MetadataDamageTest, ExifThatIsNotATiffIsLeftOut) {
  const std::string header("Exif\0\0", 6);
  for (const std::string& block :
       {std::string("II"), std::string("XX*\0\x08\0\0\0\0\0", 10), std::string("II*\0\xFF\xFF\0\0", 8)}) {
    EXPECT_THAT(WarningsOf(JpegWithSegments(Segment(kApp1, header + block) + SoundXmp())),
                MatchesLines("damaged EXIF of '.*in' was left out: [^\n]+\n"));
    EXPECT_TRUE(saved->exifData().empty());
    EXPECT_EQ(XmpValue(*saved, "Xmp.xmp.Rating"), "4");
  }
}

TEST_F(MetadataDamageTest, ExifEntriesOutsideTheBlockAreLeftOut) {
  const ExifBlock blocks[] = {
      ExifBlock().Ascii(Ifd::kZero, 0x010F, "Camera").Longs(Ifd::kZero, 0x8769, {70000}),
      ExifBlock().Ascii(Ifd::kZero, 0x010F, "Camera").Longs(Ifd::kZero, 0x8825, {70000}),
      ExifBlock().Ascii(Ifd::kZero, 0x010F, "Camera").Entry(Ifd::kZero, 0x0110, TiffFormat::kAscii, 4000, {}),
  };
  for (const ExifBlock& block : blocks) {
    EXPECT_THAT(WarningsOf(JpegWithSegments(Segment(kApp1, TextOf(block.Serialize())))),
                MatchesLines("damaged EXIF of '.*in' was left out: [^\n]*out of bounds[^\n]*\n"));
    EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "Camera");
  }
}

// Nothing of them is kept, and exiv2 finds fault with those of many good files.
TEST_F(MetadataDamageTest, CutMakerNotesAreIgnored) {
  std::vector<std::uint8_t> note = {'S', 'O', 'N', 'Y', ' ', 'D', 'S', 'C', ' ', 0, 0, 0, 60, 0, 2, 1, 4, 0};
  const auto size = static_cast<std::uint32_t>(note.size());
  const ExifBlock block = ExifBlock()
                              .Ascii(Ifd::kZero, 0x010F, "SONY")
                              .Entry(Ifd::kExif, 0x927C, TiffFormat::kUndefined, size, note);
  EXPECT_EQ(WarningsOf(JpegWithSegments(Segment(kApp1, TextOf(block.Serialize())))), "");
  EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "SONY");
}

TEST_F(MetadataDamageTest, IptcGarbageIsLeftOut) {
  const std::string resource("Photoshop 3.0\0008BIM\x04\x04\0\0\0\0\0\x14", 26);
  EXPECT_THAT(WarningsOf(JpegWithSegments(
                  SoundExif() +
                  Segment(kApp13, resource + std::string("\x1C\x02\x74\xFF\xFF", 5) + std::string(15, 'x')))),
              MatchesLines("damaged IPTC of '.*in' was left out: [^\n]+\n"));
  EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "Camera");
}

TEST_F(MetadataDamageTest, IptcWithoutARecordIsLeftOut) {
  const std::string too_long(
      "Photoshop 3.0\0008BIM\x04\x04\0\0\0\0\x4E\x20\x1C\x02\x74\0\x03"
      "abc",
      34);
  const std::string no_record("Photoshop 3.0\0008BIM\x04\x04\0\0\0\0\0\x08garbages", 34);
  for (const std::string& garbage : {too_long, no_record}) {
    EXPECT_THAT(WarningsOf(JpegWithSegments(SoundExif() + Segment(kApp13, garbage))),
                MatchesLines("damaged IPTC of '.*in' was left out: [^\n]+\n"));
    EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "Camera");
  }
}

TEST_F(MetadataDamageTest, XmpThatIsNotWellFormedIsLeftOut) {
  for (const std::string& packet : {kBrokenXmp, std::string("garbage")}) {
    EXPECT_THAT(WarningsOf(JpegWithSegments(Segment(kApp1, kXmpName + packet) + SoundExif())),
                MatchesLines("damaged XMP of '.*in' was left out: [^\n]+\n"));
    EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "Camera");
  }
}

TEST_F(MetadataDamageTest, SeveralKindsGiveOneWarningEach) {
  const std::string exif = Segment(kApp1, std::string("Exif\0\0II", 8));
  EXPECT_THAT(WarningsOf(JpegWithSegments(exif + Segment(kApp1, kXmpName + kBrokenXmp))),
              MatchesLines("damaged EXIF of [^\n]+\ndamaged XMP of [^\n]+\n"));
}

TEST_F(MetadataDamageTest, PngChunksAreJudgedOneByOne) {
  const std::string sound =
      MakePngChunk("eXIf", TextOf(ExifBlock().Ascii(Ifd::kZero, 0x010F, "Camera").Serialize()).substr(6));
  const std::string xmp("XML:com.adobe.xmp\0\0\0\0\0", 22);
  const std::string compressed("XML:com.adobe.xmp\0\1\0\0\0", 22);
  for (const std::string& damaged :
       {MakePngChunk("iTXt", xmp + kBrokenXmp), MakePngChunk("iTXt", compressed + "garbage")}) {
    EXPECT_THAT(WarningsOf(PngWithChunks(damaged + sound)),
                MatchesLines("damaged XMP of '.*in' was left out: [^\n]+\n"));
    EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "Camera");
  }
  const std::string profile("Raw profile type exif\0\0garbage", 30);
  for (const std::string& damaged : {MakePngChunk("eXIf", "garbage"), MakePngChunk("zTXt", profile)}) {
    EXPECT_THAT(WarningsOf(PngWithChunks(damaged)),
                MatchesLines("damaged EXIF of '.*in' was left out: [^\n]+\n"));
  }
  EXPECT_EQ(WarningsOf(PngWithChunks(MakePngChunk("tEXt", "") + sound)), "");
  EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "Camera");
}

// A color profile stops exiv2.
TEST_F(MetadataDamageTest, ADamagedProfileTakesNoMetadataWithIt) {
  const std::string profile =
      Segment(kApp2, std::string("ICC_PROFILE\0\x01\x01\0\0\x13\x88", 18) + std::string(300, 'x'));
  WarningsOf(JpegWithSegments(profile + SoundExif()));
  EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "Camera");
}

TEST_F(MetadataDamageTest, ImageDataThatIsCutTakesNoMetadataWithIt) {
  const std::string jpeg = TextOf(ReadBytes(LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg"));
  EXPECT_EQ(WarningsOf(jpeg.substr(0, 40000)), "");
  EXPECT_NE(ExifValue(*saved, "Exif.Image.Make"), "(none)");
}

TEST_F(MetadataDamageTest, ADamagedDirectoryOfARawFileIsLeftOut) {
  const cv::Mat gray(48, 64, CV_8UC3, cv::Scalar::all(128));
  lumvik::test::RawOptions options;
  options.format = lumvik::test::RawFormat::kDng;
  lumvik::test::TiffDirectory directory = lumvik::test::MakeRawDirectory(gray, options);
  Bytes file = lumvik::test::MakeRawFile(gray, options);
  // The pointer to the EXIF directory.
  const Bytes pointer = {0x69, 0x87, 4, 0, 1, 0, 0, 0};
  const auto entry = std::search(file.begin(), file.end(), pointer.begin(), pointer.end());
  ASSERT_NE(entry, file.end());
  std::fill_n(entry + 8, 3, 0xFF);
  EXPECT_THAT(WarningsOf(TextOf(file)), MatchesLines("damaged EXIF of '.*in' was left out: [^\n]+\n"));
  EXPECT_EQ(ExifValue(*saved, "Exif.Image.Make"), "Testbench");
}

// PNG allows a text of any length, a segment of a JPEG does not.
TEST_F(MetadataDamageTest, ValuesTooLongForAJpegAreLeftOut) {
  const std::string xmp =
      std::string("XML:com.adobe.xmp\0\0\0\0\0", 22) +
      XmpPacket("<dc:title>" + std::string(70000, 't') + "</dc:title><dc:source>short</dc:source>");
  const std::string exif = TextOf(ExifBlock()
                                      .Ascii(Ifd::kZero, 0x010E, std::string(66000, 'c'))
                                      .Ascii(Ifd::kZero, 0x010F, "Camera")
                                      .Serialize())
                               .substr(6);
  const std::string content = PngWithChunks(MakePngChunk("eXIf", exif) + MakePngChunk("iTXt", xmp));
  const std::string in = WriteBytes(Path("in"), Bytes(content.begin(), content.end()));
  const PhotoHandle photo = OpenForTest(in);
  ASSERT_EQ(Save(photo, "out.jpg"), LUMVIK_HOST_OK) << lumvik_host_last_error();
  EXPECT_EQ(Warnings(photo), "Exif.Image.ImageDescription of '" + in +
                                 "' was left out: it is too long for a JPEG\n" + "Xmp.dc.title of '" + in +
                                 "' was left out: it is too long for a JPEG\n");
  const auto jpeg = OpenedByExiv2(Path("out.jpg"));
  EXPECT_EQ(ExifValue(*jpeg, "Exif.Image.Make"), "Camera");
  EXPECT_EQ(XmpValue(*jpeg, "Xmp.dc.title"), "(none)");
  EXPECT_EQ(XmpValue(*jpeg, "Xmp.dc.source"), "short");
  ASSERT_EQ(Save(photo, "out.png"), LUMVIK_HOST_OK);
  EXPECT_EQ(Warnings(photo),
            "Exif.Image.ImageDescription of '" + in + "' was left out: it is too long for a PNG\n");
  EXPECT_THAT(XmpValue(*OpenedByExiv2(Path("out.png")), "Xmp.dc.title"), HasSubstr("tttt"));
}

TEST_F(MetadataDamageTest, WarningsAreThoseOfTheLatestSave) {
  const std::string damaged = JpegWithSegments(Segment(kApp1, kXmpName + kBrokenXmp));
  const PhotoHandle photo = OpenBytesForTest(Bytes(damaged.begin(), damaged.end()));
  EXPECT_EQ(Warnings(photo), "");
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(Save(photo, "out.jpg"), LUMVIK_HOST_OK);
    EXPECT_THAT(Warnings(photo),
                MatchesLines("damaged XMP of the photograph in memory was left out: [^\n]+\n"));
  }
  ASSERT_EQ(Save(photo, "out.jpg", LUMVIK_HOST_METADATA_NONE), LUMVIK_HOST_OK);
  EXPECT_EQ(Warnings(photo), "");
}

}  // namespace
}  // namespace lumvik::host::test
