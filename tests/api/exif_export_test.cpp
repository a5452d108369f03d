// Copying EXIF from the loaded photograph into an exported JPEG.
#include <limits>

#include "api_test.h"
#include "support/exif_jpeg.h"
#include "support/process_state.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

constexpr size_t kStartMarkerSize = 2;
constexpr size_t kJfifSize = 18;  // the JFIF segment that OpenCV writes after the start marker

class ExifExportTest : public ApiTest {
 protected:
  void Load(const std::string& path) const {
    ASSERT_EQ(lumvik_load_arw(ctx(), path.c_str(), 1), LUMVIK_OK) << LastError();
  }

  // A 64x48 JPEG whose EXIF holds a camera make.
  std::string WriteExif(const std::string& name) const {
    const Bytes block = ExifBlock().Ascii(Ifd::kZero, tag::kMake, "Maker").Serialize();
    return WriteBytes(Path(name), JpegWithExif(block));
  }

  ExifInfo Info() const {
    ExifInfo info;
    EXPECT_EQ(lumvik_get_exif(ctx(), &info), LUMVIK_OK) << LastError();
    return info;
  }

  ExifInfo InfoOf(const std::string& path) const {
    Load(path);
    return Info();
  }

  // The EXIF record of a JPEG without EXIF.
  std::string NoExif() const { return Describe(InfoOf(WritePicture("without.jpg"))); }

  Bytes Export(const std::string& name, int keep_exif) const {
    EXPECT_EQ(lumvik_export_jpeg(ctx(), Path(name).c_str(), 90, 0, keep_exif), LUMVIK_OK) << LastError();
    return ReadBytes(Path(name));
  }
};

TEST_F(ExifExportTest, ExifIsCopiedOnRequest) {
  Load(LUMVIK_TEST_DATA "/tower_orientation8.jpg");
  const ExifInfo source = Info();
  Export("kept.jpg", 1);
  Export("dropped.jpg", 0);
  EXPECT_EQ(Describe(InfoOf(Path("kept.jpg"))), Describe(source));
  EXPECT_EQ(Describe(InfoOf(Path("dropped.jpg"))), NoExif());
}

TEST_F(ExifExportTest, AnyNonzeroValueRequestsExif) {
  Load(WriteExif("a.jpg"));
  const Bytes kept = Export("kept.jpg", 1);
  EXPECT_NE(Export("dropped.jpg", 0), kept);
  for (const int keep_exif : {-3, 2, 256, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(Export("kept too.jpg", keep_exif), kept) << keep_exif;
  }
}

TEST_F(ExifExportTest, TheExifSegmentReplacesTheJfifSegment) {
  Load(WriteExif("a.jpg"));
  const Bytes plain = Export("plain.jpg", 0);
  ASSERT_EQ(Bytes(plain.begin() + 2, plain.begin() + 4), (Bytes{0xFF, 0xE0}));
  const Bytes rest(plain.begin() + kStartMarkerSize + kJfifSize, plain.end());
  const Bytes spliced = Export("spliced.jpg", 1);
  ASSERT_GT(spliced.size(), rest.size() + 12);
  const size_t length = spliced.size() - rest.size() - 4;  // of the new segment, without its marker
  const Bytes start = {
      0xFF, 0xD8, 0xFF, 0xE1, static_cast<uint8_t>(length >> 8U), static_cast<uint8_t>(length), 'E', 'x',
      'i',  'f',  0,    0};
  EXPECT_EQ(Bytes(spliced.begin(), spliced.begin() + 12), start);
  EXPECT_EQ(Bytes(spliced.end() - static_cast<std::ptrdiff_t>(rest.size()), spliced.end()), rest);
}

TEST_F(ExifExportTest, WithoutExifTheJpegIsUnchanged) {
  for (const std::string& path : {WritePicture("a.png"), WritePicture("a.jpg"), WriteRaw("a.arw")}) {
    Load(path);
    EXPECT_EQ(Export("kept.jpg", 1), Export("dropped.jpg", 0)) << path;
  }
  Load(WriteExif("gone.jpg"));
  std::filesystem::remove(Path("gone.jpg"));
  EXPECT_EQ(Export("kept.jpg", 1), Export("dropped.jpg", 0));
  EXPECT_EQ(LastError(), "");
}

TEST_F(ExifExportTest, ExifThatCannotBeWrittenIsNotAFailure) {
  Load(WriteExif("a.jpg"));
  const Bytes plain = Export("plain.jpg", 0);
  const Bytes spliced = Export("spliced.jpg", 1);
  ASSERT_GT(spliced.size(), plain.size());
  {
    const FileSizeLimit limit(plain.size());
    Export("cut.jpg", 1);
  }
  EXPECT_EQ(ReadBytes(Path("cut.jpg")).size(), plain.size());
  EXPECT_NE(ReadBytes(Path("cut.jpg")), plain);
  EXPECT_EQ(LastError(), "");
}

TEST_F(ExifExportTest, OnlyJpegFilesReceiveExif) {
  Load(WriteExif("a.jpg"));
  for (const char* name : {"a.png", "a.tif", "a.bmp", "a.webp"}) {
    const Bytes kept = Export(name, 1);
    EXPECT_EQ(kept, Export(name, 0)) << name;
  }
}

TEST_F(ExifExportTest, ThePngAndTiffExportsCopyNoExif) {
  Load(WriteExif("a.jpg"));
  ASSERT_EQ(lumvik_export_png(ctx(), Path("png.jpg").c_str(), 8), LUMVIK_OK);
  ASSERT_EQ(lumvik_export_tiff(ctx(), Path("tiff.jpg").c_str()), LUMVIK_OK);
  EXPECT_EQ(Describe(InfoOf(Path("png.jpg"))), NoExif());
  EXPECT_EQ(Describe(InfoOf(Path("tiff.jpg"))), NoExif());
}

// The render is written before the EXIF is read.
TEST_F(ExifExportTest, ExportingOverThePhotographLosesItsExif) {
  Load(WriteExif("a.jpg"));
  const Bytes plain = Export("plain.jpg", 0);
  EXPECT_EQ(Export("a.jpg", 1), plain);
  EXPECT_EQ(Describe(InfoOf(Path("a.jpg"))), NoExif());
}

TEST_F(ExifExportTest, UnicodePaths) {
  const ExifInfo source = InfoOf(WriteExif("été в горах.jpg"));
  EXPECT_STREQ(source.make, "Maker");
  Export("schöner Tag.jpg", 1);
  EXPECT_EQ(Describe(InfoOf(Path("schöner Tag.jpg"))), Describe(source));
}

}  // namespace
}  // namespace lumvik::test
