// Exporting the render: format, bit depth, quality, path, failures.
#include <gmock/gmock.h>
#if !defined(_WIN32)
#include <sys/stat.h>
#include <sys/sysmacros.h>
#endif

#include <limits>
#include <opencv2/imgcodecs.hpp>
#include <stdexcept>

#include "api_test.h"
#include "support/process_state.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

// Magic bytes of each format.
constexpr char kJpegStart[] = "\xFF\xD8\xFF";
constexpr char kPngStart[] = "\x89PNG";
constexpr char kTiffStart[] = "II*";
constexpr char kBmpStart[] = "BM";
constexpr char kWebpStart[] = "RIFF";

// The three exports, with arbitrary arguments.
struct Exporter {
  const char* name;
  int (*write)(EngineContext*, const char*);
  const char* failure;
};
constexpr Exporter kExporters[] = {
    {"jpeg", [](EngineContext* c, const char* path) { return lumvik_export_jpeg(c, path, 90, 0, 1); },
     "JPEG write failed"},
    {"png", [](EngineContext* c, const char* path) { return lumvik_export_png(c, path, 8); },
     "PNG write failed"},
    {"tiff", [](EngineContext* c, const char* path) { return lumvik_export_tiff(c, path); },
     "TIFF write failed"},
};

std::string Text(const Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

class ExportTest : public ApiTest {
 protected:
  ExportTest() { LoadNeutral(); }

  Bytes Jpeg(const std::string& name, int quality, int reserved = 0, int keep_exif = 0) const {
    EXPECT_EQ(lumvik_export_jpeg(ctx(), Path(name).c_str(), quality, reserved, keep_exif), LUMVIK_OK)
        << LastError();
    return ReadBytes(Path(name));
  }

  Bytes Png(const std::string& name, int bit_depth) const {
    EXPECT_EQ(lumvik_export_png(ctx(), Path(name).c_str(), bit_depth), LUMVIK_OK) << LastError();
    return ReadBytes(Path(name));
  }

  Bytes Tiff(const std::string& name) const {
    EXPECT_EQ(lumvik_export_tiff(ctx(), Path(name).c_str()), LUMVIK_OK) << LastError();
    return ReadBytes(Path(name));
  }

  cv::Mat Read(const std::string& name) const { return cv::imread(Path(name), cv::IMREAD_UNCHANGED); }

  // Expects all three exports to fail with their own text.
  void ExpectWriteFailures(const std::string& path) const {
    for (const Exporter& exporter : kExporters) {
      ctx()->last_error = "another";
      EXPECT_EQ(exporter.write(ctx(), path.c_str()), kFailed) << exporter.name;
      EXPECT_EQ(LastError(), exporter.failure);
    }
  }

  // Expects all three exports to throw, to store no text and to leave the context unchanged.
  template <typename Exception>
  void ExpectThrows(const std::string& path) const {
    for (const Exporter& exporter : kExporters) {
      SCOPED_TRACE(exporter.name);
      ctx()->last_error = "an earlier failure";
      const std::string before = Describe(*ctx());
      EXPECT_THROW(exporter.write(ctx(), path.c_str()), Exception);
      EXPECT_EQ(Describe(*ctx()), before);
      EXPECT_TRUE(SameBytes(Exported(), Widened(SmallPicture())));
    }
  }
};

TEST_F(ExportTest, JpegIsTheRenderEncodedAtTheQuality) {
  for (const int quality : {1, 2, 50, 90, 99, 100}) {
    std::vector<uint8_t> expected;
    cv::imencode(".jpg", SmallPicture(), expected, {cv::IMWRITE_JPEG_QUALITY, quality});
    EXPECT_EQ(Jpeg("a.jpg", quality), expected) << quality;
  }
}

TEST_F(ExportTest, JpegQualityIsClampedTo1To100) {
  const Bytes worst = Jpeg("1.jpg", 1);
  const Bytes best = Jpeg("100.jpg", 100);
  EXPECT_NE(worst, best);
  for (const int quality : {0, -5, std::numeric_limits<int>::min()}) EXPECT_EQ(Jpeg("a.jpg", quality), worst);
  for (const int quality : {101, 250, std::numeric_limits<int>::max()})
    EXPECT_EQ(Jpeg("a.jpg", quality), best);
}

TEST_F(ExportTest, TheReservedArgumentIsIgnored) {
  const Bytes expected = Jpeg("a.jpg", 80, 0);
  for (const int reserved : {1, -1, 4, 444, std::numeric_limits<int>::max()}) {
    EXPECT_EQ(Jpeg("b.jpg", 80, reserved), expected);
  }
}

TEST_F(ExportTest, PngHasSixteenBitsOnlyForABitDepthOfSixteen) {
  for (const int depth : {8, 0, 24, -16, 1, 15, 17, 32}) {
    Png("a.png", depth);
    EXPECT_TRUE(SameBytes(Read("a.png"), SmallPicture())) << depth;
  }
  Png("a.png", 16);
  EXPECT_TRUE(SameBytes(Read("a.png"), Widened(SmallPicture())));
}

TEST_F(ExportTest, TiffHasSixteenBits) {
  Tiff("a.tif");
  EXPECT_TRUE(SameBytes(Read("a.tif"), Widened(SmallPicture())));
}

TEST_F(ExportTest, SixteenBitExportsHoldTheRenderedSamples) {
  lumvik_set_exposure(ctx(), 0.3F);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  std::vector<cv::Mat> rendered;
  cv::split(ctx()->rendered, rendered);
  cv::Mat expected;
  cv::merge(std::vector<cv::Mat>{rendered[2], rendered[1], rendered[0]}, expected);
  Png("a.png", 16);
  Tiff("a.tif");
  EXPECT_TRUE(SameBytes(Read("a.png"), expected));
  EXPECT_TRUE(SameBytes(Read("a.tif"), expected));
  cv::Mat reduced;
  expected.convertTo(reduced, CV_8U, 1.0 / 257);
  Png("a.png", 8);
  EXPECT_TRUE(SameBytes(Read("a.png"), reduced));
}

TEST_F(ExportTest, NoExportWritesAlpha) {
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  cv::Mat transparent(ctx()->rendered.size(), CV_16U, cv::Scalar(0));
  cv::insertChannel(transparent, ctx()->rendered, 3);
  Png("8.png", 8);
  Png("16.png", 16);
  Tiff("a.tif");
  EXPECT_TRUE(SameBytes(Read("8.png"), SmallPicture()));
  EXPECT_TRUE(SameBytes(Read("16.png"), Widened(SmallPicture())));
  EXPECT_TRUE(SameBytes(Read("a.tif"), Widened(SmallPicture())));
}

TEST_F(ExportTest, TheExtensionSelectsTheEncoder) {
  const struct {
    const char* name;
    const char* start;
  } cases[] = {{"a.jpg", kJpegStart},  {"a.jpeg", kJpegStart},   {"a.JPG", kJpegStart},  {"a.png", kPngStart},
               {"a.Png", kPngStart},   {"a.tif", kTiffStart},    {"a.tiff", kTiffStart}, {"a.bmp", kBmpStart},
               {"a.webp", kWebpStart}, {"a.jpg.png", kPngStart}, {".png", kPngStart}};
  for (const auto& c : cases) {
    for (const Exporter& exporter : kExporters) {
      fs::remove(Path(c.name));
      EXPECT_EQ(exporter.write(ctx(), Path(c.name).c_str()), LUMVIK_OK) << exporter.name << " " << c.name;
      EXPECT_THAT(Text(ReadBytes(Path(c.name))), ::testing::StartsWith(c.start))
          << exporter.name << " " << c.name;
    }
  }
}

TEST_F(ExportTest, TheFunctionSelectsTheBitDepth) {
  EXPECT_EQ(Jpeg("a.png", 50, 0, 1), Png("b.png", 8));
  EXPECT_EQ(Jpeg("a.tif", 50, 0, 1), Png("b.tif", 8));
  EXPECT_NE(Tiff("b.tif"), Png("a.tif", 8));
  EXPECT_EQ(Tiff("a.tif"), Png("b.tif", 16));
  EXPECT_EQ(Tiff("a.png"), Png("b.png", 16));
  EXPECT_EQ(Read("a.tif").depth(), CV_16U);
}

TEST_F(ExportTest, TheSameCallsGiveTheSameBytes) {
  EXPECT_EQ(Jpeg("a.jpg", 90), Jpeg("b.jpg", 90));
  EXPECT_EQ(Png("a.png", 16), Png("b.png", 16));
  EXPECT_EQ(Tiff("a.tif"), Tiff("b.tif"));
}

TEST_F(ExportTest, AnExportWithoutARenderDevelopsTheImage) {
  lumvik_reset_adjustments(ctx());
  const Bytes jpeg = Jpeg("a.jpg", 90);
  const Bytes png = Png("a.png", 16);
  const Bytes tiff = Tiff("a.tif");
  EXPECT_FALSE(ctx()->render_valid);
  EXPECT_FALSE(SameBytes(Read("a.png"), Widened(SmallPicture())));
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  EXPECT_EQ(Jpeg("a.jpg", 90), jpeg);
  EXPECT_EQ(Png("a.png", 16), png);
  EXPECT_EQ(Tiff("a.tif"), tiff);
  EXPECT_TRUE(ctx()->render_valid);
}

TEST_F(ExportTest, ALargerExistingFileIsReplacedEntirely) {
  for (const Exporter& exporter : kExporters) {
    const std::string fresh = Path(std::string("fresh.") + exporter.name);
    const std::string existing = Path(std::string("existing.") + exporter.name);
    WriteBytes(existing, Bytes(500000, 'x'));
    ASSERT_EQ(exporter.write(ctx(), fresh.c_str()), LUMVIK_OK);
    ASSERT_EQ(exporter.write(ctx(), existing.c_str()), LUMVIK_OK);
    EXPECT_EQ(ReadBytes(existing), ReadBytes(fresh));
  }
}

TEST_F(ExportTest, UnicodePaths) {
  const std::string folder = Path("фото 写真");
  fs::create_directory(fs::u8path(folder));
  for (const Exporter& exporter : kExporters) {
    const std::string path = folder + "/schöner Tag." + exporter.name;
    EXPECT_EQ(exporter.write(ctx(), path.c_str()), LUMVIK_OK) << LastError();
    EXPECT_TRUE(fs::exists(fs::u8path(path)));
  }
}

TEST_F(ExportTest, ADotInTheFolderNameCountsWhenTheFileNameHasNone) {
  fs::create_directory(Path("out.dir"));
  ExpectThrows<cv::Exception>(Path("out.dir/photo"));
  EXPECT_EQ(Png("out.dir/photo.png", 8), Png("a.png", 8));
  EXPECT_FALSE(fs::exists(Path("out.dir/photo")));
}

TEST_F(ExportTest, APathWithoutADotThrowsOutOfRange) {
  const std::string path =
      "lumvik export without an extension";  // relative, since the folder may contain a dot
  ExpectThrows<std::out_of_range>(path);
  ExpectThrows<std::out_of_range>("");
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  ExpectThrows<std::out_of_range>(path);
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(ExportTest, AnUnknownExtensionThrowsAndWritesNoFile) {
  for (const char* name : {"a.unknown", "a.", "a.arw", "a.pn", "a.jpgg"}) {
    ExpectThrows<cv::Exception>(Path(name));
    EXPECT_FALSE(fs::exists(Path(name))) << name;
  }
  const Bytes earlier = {1, 2, 3};
  WriteBytes(Path("kept.unknown"), earlier);
  ExpectThrows<cv::Exception>(Path("kept.unknown"));
  EXPECT_EQ(ReadBytes(Path("kept.unknown")), earlier);
}

TEST_F(ExportTest, AFileThatCannotBeCreatedFails) {
  fs::create_directory(Path("folder.png"));
  ExpectWriteFailures(Path("no such folder/a.png"));
  ExpectWriteFailures(Path("folder.png"));
  ExpectWriteFailures(Path("neutral.png/a.png"));
  ExpectWriteFailures(Path(std::string(300, 'n') + ".png"));
  EXPECT_FALSE(fs::exists(Path("no such folder")));
  EXPECT_TRUE(SameBytes(Exported(), Widened(SmallPicture())));
}

#if !defined(_WIN32)  // Windows has no such device
TEST_F(ExportTest, AFullDeviceFails) {
  if (fs::exists("/dev/full")) {
    fs::create_symlink("/dev/full", Path("full.jpg"));
  } else if (mknod(Path("full.jpg").c_str(), S_IFCHR | 0600, makedev(1, 7)) != 0) {
    GTEST_SKIP() << "cannot create a device that is always full";
  }
  ExpectWriteFailures(Path("full.jpg"));
}
#endif

TEST_F(ExportTest, AShortWriteFailsAndLeavesAPartialFile) {
  const Bytes whole = Png("whole.png", 16);
  ASSERT_GT(whole.size(), 100U);
  {
    const FileSizeLimit limit(100);
    ExpectWriteFailures(Path("a.png"));
    EXPECT_EQ(lumvik_export_png(ctx(), Path("cut.png").c_str(), 16), kFailed);
  }
  EXPECT_EQ(ReadBytes(Path("cut.png")), Bytes(whole.begin(), whole.begin() + 100));
  EXPECT_EQ(Png("cut.png", 16), whole);
}

TEST_F(ExportTest, AReadOnlyFolderFails) {
  fs::create_directory(Path("kept"));
  fs::permissions(folder(), fs::perms::all);
  fs::permissions(Path("kept"), fs::perms::owner_read | fs::perms::owner_exec);
  ASSERT_EQ(lumvik_process(ctx()), LUMVIK_OK);
  {
    const OrdinaryUser user;
    ExpectWriteFailures(Path("kept/a.png"));
  }
  EXPECT_TRUE(fs::is_empty(Path("kept")));
}

TEST_F(ExportTest, ThePhotographItselfMayBeOverwritten) {
  ASSERT_EQ(lumvik_load_arw(ctx(), WritePicture("a.jpg").c_str(), 1), LUMVIK_OK);
  const Bytes expected = Jpeg("b.jpg", 90, 0, 1);
  EXPECT_EQ(Jpeg("a.jpg", 90, 0, 1), expected);
  EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK);
}

TEST_F(ExportTest, ARawFileExportsUnchangedWithNeutralSettings) {
  ASSERT_EQ(lumvik_load_arw(ctx(), WriteRaw("a.arw").c_str(), 1), LUMVIK_OK) << LastError();
  lumvik_set_temperature(ctx(), 6500);
  std::vector<cv::Mat> held;
  cv::split(ctx()->decoded.image, held);
  cv::Mat expected;
  cv::merge(std::vector<cv::Mat>{held[2], held[1], held[0]}, expected);
  EXPECT_TRUE(SameBytes(Exported(), expected));
}

}  // namespace
}  // namespace lumvik::test
