// Saving renders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

#include "api/photo_handle.h"
#include "color/color_profile.h"
#include "color/embedded_profile.h"
#include "files/jpeg_segments.h"
#include "files/tiff_reading.h"
#include "lumvik.h"
#include "lumvik_host.h"
#include "photo/test_photos.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ExifBlock;
using lumvik::test::Ifd;
using lumvik::test::ReadBytes;
using lumvik::test::TempDir;
using lumvik::test::WriteBytes;
using ::testing::HasSubstr;

lumvik_host_save_options SaveOptions() {
  lumvik_host_save_options options{};
  options.struct_size = sizeof(options);
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  return options;
}

struct SavedKind {
  const char* name;
  lumvik_host_format format;
  int bits;
};
constexpr SavedKind kSavedKinds[] = {{"a.jpg", LUMVIK_HOST_FORMAT_JPEG, 8},
                                     {"a.png", LUMVIK_HOST_FORMAT_PNG, 8},
                                     {"b.png", LUMVIK_HOST_FORMAT_PNG, 16},
                                     {"a.tif", LUMVIK_HOST_FORMAT_TIFF, 16}};

// Whether a JPEG has this value of the EXIF tag.
bool HasColorSpace(const Bytes& jpeg, std::uint64_t value) {
  constexpr std::size_t kExifHeader = 6;
  for (const JpegSegment& segment : JpegSegments({reinterpret_cast<const char*>(jpeg.data()), jpeg.size()})) {
    if (segment.marker != kJpegApp1 || segment.payload.size() < kExifHeader) continue;
    const TiffReader reader(segment.payload.substr(kExifHeader));
    for (const TiffIfd& directory : reader.Directories()) {
      const TiffEntry* const space = directory.Find(0xA001);
      if (space != nullptr && reader.Numbers(*space) == std::vector{value}) return true;
    }
  }
  return false;
}

class SaveTest : public ::testing::Test {
 protected:
  SaveTest() { SetForTest(photo_, {{"exposure", SettingValue(0.4F)}, {"saturation", SettingValue(20.0F)}}); }

  std::string File(const std::string& name) const { return dir_.File(name); }

  lumvik_host_status Save(const std::string& name, const lumvik_host_save_options& options) {
    return lumvik_host_save(photo_.get(), File(name).c_str(), &options);
  }

  // What the engine itself exports for the settings of the photo.
  Bytes EngineExport(const SavedKind& kind, int quality = 90) {
    const std::string path = File(std::string("engine_") + kind.name);
    EngineContext* const context = FindPhoto(photo_.get())->photo.Engine();
    const int status =
        kind.format == LUMVIK_HOST_FORMAT_JPEG  ? lumvik_export_jpeg(context, path.c_str(), quality, 0, 0)
        : kind.format == LUMVIK_HOST_FORMAT_PNG ? lumvik_export_png(context, path.c_str(), kind.bits)
                                                : lumvik_export_tiff(context, path.c_str());
    EXPECT_EQ(status, 0);
    return ReadBytes(path);
  }

  cv::Mat Read(const std::string& name) const { return cv::imread(File(name), cv::IMREAD_UNCHANGED); }

  TempDir dir_;
  PhotoHandle photo_ = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_PNG));
};

TEST_F(SaveTest, FormatsGoByExtensionInAnyCase) {
  EXPECT_EQ(lumvik_host_format_of("a/b.c.JpG"), LUMVIK_HOST_FORMAT_JPEG);
  EXPECT_EQ(lumvik_host_format_of("b.jpeg"), LUMVIK_HOST_FORMAT_JPEG);
  EXPECT_EQ(lumvik_host_format_of("b.PNG"), LUMVIK_HOST_FORMAT_PNG);
  EXPECT_EQ(lumvik_host_format_of("b.tif"), LUMVIK_HOST_FORMAT_TIFF);
  EXPECT_EQ(lumvik_host_format_of("b.TIFF"), LUMVIK_HOST_FORMAT_TIFF);
  for (const char* other : {"", "jpg", ".jpg", "a.webp", "a.jpg/b", "a.jpg."}) {
    EXPECT_EQ(lumvik_host_format_of(other), LUMVIK_HOST_FORMAT_UNKNOWN) << other;
  }
  EXPECT_EQ(lumvik_host_format_of(nullptr), LUMVIK_HOST_FORMAT_UNKNOWN);
}

TEST_F(SaveTest, ExtensionsAreThoseOfTheFormatsThatCanBeWritten) {
  EXPECT_STREQ(lumvik_host_extension_of(LUMVIK_HOST_FORMAT_JPEG), ".jpg");
  EXPECT_STREQ(lumvik_host_extension_of(LUMVIK_HOST_FORMAT_PNG), ".png");
  EXPECT_STREQ(lumvik_host_extension_of(LUMVIK_HOST_FORMAT_TIFF), ".tif");
  for (const int other : {-1, 0, 1, 5, 6, 99}) EXPECT_EQ(lumvik_host_extension_of(other), nullptr) << other;
}

TEST_F(SaveTest, WithoutMetadataAndProfileTheFileIsTheEnginesOwn) {
  for (const SavedKind& kind : kSavedKinds) {
    lumvik_host_save_options options = SaveOptions();
    options.no_profile = 1;
    options.bits = kind.bits;
    options.quality = 77;
    ASSERT_EQ(Save(kind.name, options), LUMVIK_HOST_OK) << lumvik_host_last_error();
    EXPECT_EQ(ReadBytes(File(kind.name)), EngineExport(kind, 77)) << kind.name;
  }
}

TEST_F(SaveTest, FilesHaveTheSrgbProfile) {
  for (const SavedKind& kind : kSavedKinds) {
    lumvik_host_save_options options = SaveOptions();
    options.bits = kind.bits;
    ASSERT_EQ(Save(kind.name, options), LUMVIK_HOST_OK) << lumvik_host_last_error();
    const Bytes bytes = ReadBytes(File(kind.name));
    const ColorProfile profile(FindIccProfile(std::string(bytes.begin(), bytes.end()), kind.format));
    ASSERT_TRUE(profile.IsUsable()) << kind.name;
    EXPECT_TRUE(profile.IsLikeSrgb()) << kind.name;
    const cv::Mat expected = cv::imdecode(EngineExport(kind), cv::IMREAD_UNCHANGED);
    EXPECT_EQ(Read(kind.name).type(), expected.type()) << kind.name;
    EXPECT_EQ(cv::norm(Read(kind.name), expected, cv::NORM_INF), 0) << kind.name;
  }
}

TEST_F(SaveTest, ReducedImagesAreAveragesOfAreas) {
  for (const SavedKind& kind : kSavedKinds) {
    lumvik_host_save_options options = SaveOptions();
    options.bits = kind.bits;
    options.quality = 100;
    options.max_width = 40;
    options.max_height = 1000;
    ASSERT_EQ(Save(kind.name, options), LUMVIK_HOST_OK) << lumvik_host_last_error();
    const SavedKind lossless = {"whole.png", LUMVIK_HOST_FORMAT_PNG, kind.bits};
    cv::Mat expected;
    cv::resize(cv::imdecode(EngineExport(lossless), cv::IMREAD_UNCHANGED), expected, {40, 27}, 0, 0,
               cv::INTER_AREA);
    const cv::Mat saved = Read(kind.name);
    ASSERT_EQ(saved.size(), expected.size()) << kind.name;
    ASSERT_EQ(saved.type(), expected.type()) << kind.name;
    const bool is_lossy = kind.format == LUMVIK_HOST_FORMAT_JPEG;
    EXPECT_LE(cv::norm(saved, expected, cv::NORM_L1) / static_cast<double>(3 * saved.total()),
              is_lossy ? 8 : 0)
        << kind.name;
  }
}

TEST_F(SaveTest, ImagesAreNotEnlarged) {
  lumvik_host_save_options options = SaveOptions();
  options.no_profile = 1;
  options.max_width = 5000;
  options.max_height = 5000;
  ASSERT_EQ(Save("a.jpg", options), LUMVIK_HOST_OK);
  EXPECT_EQ(ReadBytes(File("a.jpg")), EngineExport(kSavedKinds[0]));
}

TEST_F(SaveTest, BytesAreThoseOfTheFile) {
  for (const SavedKind& kind : kSavedKinds) {
    lumvik_host_save_options options = SaveOptions();
    options.bits = kind.bits;
    options.format = kind.format;
    options.max_width = 50;
    ASSERT_EQ(Save(kind.name, options), LUMVIK_HOST_OK);
    uint8_t* data = nullptr;
    size_t size = 0;
    ASSERT_EQ(lumvik_host_save_bytes(photo_.get(), &options, &data, &size), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    EXPECT_EQ(Bytes(data, data + size), ReadBytes(File(kind.name))) << kind.name;
    lumvik_host_free(data);
  }
}

TEST_F(SaveTest, StatedFormatNeedsNoExtension) {
  lumvik_host_save_options options = SaveOptions();
  options.format = LUMVIK_HOST_FORMAT_PNG;
  ASSERT_EQ(Save("without", options), LUMVIK_HOST_OK) << lumvik_host_last_error();
  EXPECT_EQ(cv::imread(File("without")).cols, 96);
}

TEST_F(SaveTest, InvalidOptionsAreReportedAndNothingIsWritten) {
  struct Case {
    const char* name;
    void (*change)(lumvik_host_save_options&);
    const char* text;
  };
  const Case cases[] = {
      {"a.jpg", [](auto& o) { o.bits = 16; }, "bits is 16; a JPEG has 8 bits per channel"},
      {"a.png", [](auto& o) { o.bits = 12; }, "bits is 12; a PNG has 8 or 16 bits per channel"},
      {"a.tif", [](auto& o) { o.bits = 8; }, "bits is 8; a TIFF has 16 bits per channel"},
      {"a.jpg", [](auto& o) { o.quality = 101; }, "quality is 101, which is not in 1..100"},
      {"a.jpg", [](auto& o) { o.quality = -1; }, "quality is -1"},
      {"a.jpg", [](auto& o) { o.max_width = -1; }, "max_width is -1"},
      {"a.jpg", [](auto& o) { o.max_height = -2; }, "max_height is -2"},
      {"a.jpg", [](auto& o) { o.metadata = 3; }, "metadata is 3"},
      {"a.jpg", [](auto& o) { o.copyright = "me"; }, "copyright is set, but metadata is none"},
      {"a.jpg", [](auto& o) { o.format = LUMVIK_HOST_FORMAT_PNG; }, "the extension is not that of a PNG"},
      {"a.xyz", [](auto& o) { o.format = LUMVIK_HOST_FORMAT_PNG; }, "the extension is not that of a PNG"},
      {"a.xyz", [](auto& /*o*/) {}, "the extension is not .jpg, .jpeg, .png, .tif or .tiff"},
      {"a", [](auto& /*o*/) {}, "the extension is not .jpg"},
      {"a.bmp", [](auto& o) { o.format = LUMVIK_HOST_FORMAT_BMP; }, "format is 5"},
      {"a.jpg", [](auto& o) { o.struct_size = 4; }, "struct_size is 4"},
  };
  for (const Case& invalid : cases) {
    lumvik_host_save_options options = SaveOptions();
    invalid.change(options);
    EXPECT_EQ(Save(invalid.name, options), LUMVIK_HOST_INVALID_ARGUMENT) << invalid.text;
    EXPECT_THAT(lumvik_host_last_error(), HasSubstr(invalid.text));
  }
  EXPECT_TRUE(std::filesystem::is_empty(dir_.path()));
  lumvik_host_save_options options = SaveOptions();
  uint8_t* data = nullptr;
  size_t size = 0;
  EXPECT_EQ(lumvik_host_save_bytes(photo_.get(), &options, &data, &size), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_STREQ(lumvik_host_last_error(), "format is not set");
  EXPECT_EQ(lumvik_host_save(photo_.get(), nullptr, &options), LUMVIK_HOST_INVALID_ARGUMENT);
}

TEST_F(SaveTest, ExistingFileIsReplacedOnRequestOnly) {
  lumvik_host_save_options options = SaveOptions();
  WriteBytes(File("a.jpg"), {1, 2, 3});
  EXPECT_EQ(Save("a.jpg", options), LUMVIK_HOST_EXISTS);
  EXPECT_EQ(ReadBytes(File("a.jpg")).size(), 3U);
  options.overwrite = 1;
  EXPECT_EQ(Save("a.jpg", options), LUMVIK_HOST_OK);
  EXPECT_GT(ReadBytes(File("a.jpg")).size(), 3U);
}

TEST_F(SaveTest, MissingFolderIsNotFound) {
  EXPECT_EQ(Save("none/a.jpg", SaveOptions()), LUMVIK_HOST_NOT_FOUND);
}

TEST_F(SaveTest, MetadataOfThePhotographIsKept) {
  const PhotoHandle photo = OpenForTest(LUMVIK_SAMPLES "/sample_small.ARW");
  struct Case {
    lumvik_host_metadata_policy policy;
    bool has_camera;
    bool has_position;
  };
  const Case cases[] = {{LUMVIK_HOST_METADATA_KEEP, true, true},
                        {LUMVIK_HOST_METADATA_NO_POSITION, true, false},
                        {LUMVIK_HOST_METADATA_NONE, false, false}};
  for (const Case& kept : cases) {
    lumvik_host_save_options options = SaveOptions();
    options.metadata = kept.policy;
    options.overwrite = 1;
    options.max_width = 200;
    ASSERT_EQ(lumvik_host_save(photo.get(), File("a.jpg").c_str(), &options), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    const PhotoHandle saved = OpenForTest(File("a.jpg"));
    ExifInfo exif{};
    ASSERT_EQ(lumvik_get_exif(FindPhoto(saved.get())->photo.Engine(), &exif), 0);
    EXPECT_EQ(std::string(exif.model).empty(), !kept.has_camera) << kept.policy;
    EXPECT_EQ(std::isnan(exif.gps_latitude), !kept.has_position) << kept.policy;
    EXPECT_EQ(InfoForTest(saved).profile, std::string("sRGB")) << kept.policy;
  }
}

TEST_F(SaveTest, EveryFormatHasMetadataAndProfile) {
  const PhotoHandle photo = OpenForTest(LUMVIK_SAMPLES "/sample_small.ARW");
  for (const SavedKind& kind : kSavedKinds) {
    lumvik_host_save_options options = SaveOptions();
    options.metadata = LUMVIK_HOST_METADATA_KEEP;
    options.bits = kind.bits;
    options.max_width = 100;
    options.copyright = "(c) A. Photographer";
    ASSERT_EQ(lumvik_host_save(photo.get(), File(kind.name).c_str(), &options), LUMVIK_HOST_OK)
        << lumvik_host_last_error();
    const Bytes bytes = ReadBytes(File(kind.name));
    const std::string text(bytes.begin(), bytes.end());
    EXPECT_TRUE(ColorProfile(FindIccProfile(text, kind.format)).IsUsable()) << kind.name;
    if (kind.format != LUMVIK_HOST_FORMAT_PNG) {  // compressed there
      EXPECT_THAT(text, HasSubstr("(c) A. Photographer")) << kind.name;
      EXPECT_THAT(text, HasSubstr("ILCE-7M3")) << kind.name;
    }
    EXPECT_EQ(Read(kind.name).cols, 100) << kind.name;
    lumvik_host_integrity integrity{};
    integrity.struct_size = sizeof(integrity);
    EXPECT_EQ(lumvik_host_check_file(File(kind.name).c_str(), &integrity), LUMVIK_HOST_OK)
        << integrity.reason;
  }
}

TEST_F(SaveTest, ConvertedColorsAreNotDeclaredAsAdobeRgb) {
  ExifBlock exif;
  exif.Shorts(Ifd::kExif, 0xA001, {65535});
  exif.Ascii(Ifd::kInteroperability, 1, "R03");
  const PhotoHandle photo =
      OpenBytesForTest(lumvik::test::JpegWithExif(exif.Serialize(), PhotoBytes(LUMVIK_HOST_FORMAT_JPEG)));
  ASSERT_EQ(InfoForTest(photo).is_converted, 1);
  lumvik_host_save_options options = SaveOptions();
  options.metadata = LUMVIK_HOST_METADATA_KEEP;
  options.no_profile = 1;
  ASSERT_EQ(lumvik_host_save(photo.get(), File("a.jpg").c_str(), &options), LUMVIK_HOST_OK)
      << lumvik_host_last_error();
  EXPECT_EQ(InfoForTest(OpenForTest(File("a.jpg"))).is_converted, 0);
  const Bytes bytes = ReadBytes(File("a.jpg"));
  EXPECT_FALSE(HasColorSpace(bytes, 65535));
  EXPECT_TRUE(HasColorSpace(bytes, 1));
}

TEST_F(SaveTest, CutoutNeedsAMask) {
  EXPECT_EQ(lumvik_host_save_cutout(photo_.get(), File("a.png").c_str(), nullptr), LUMVIK_HOST_NOT_FOUND);
  EXPECT_THAT(lumvik_host_last_error(), HasSubstr("has no subject mask"));
}

TEST_F(SaveTest, CutoutIsTransparentOutsideTheMask) {
  const PhotoHandle photo = OpenBytesForTest(PhotoBytes(LUMVIK_HOST_FORMAT_RAW));
  ASSERT_EQ(lumvik_host_find_subject(photo.get(), 0.5F, 0.5F), LUMVIK_HOST_OK) << lumvik_host_last_error();
  ASSERT_EQ(lumvik_host_save_cutout(photo.get(), File("a.png").c_str(), nullptr), LUMVIK_HOST_OK)
      << lumvik_host_last_error();
  const cv::Mat cutout = Read("a.png");
  ASSERT_EQ(cutout.type(), CV_8UC4);
  cv::Mat mask(cutout.size(), CV_8UC1);
  std::int32_t width = 0;
  std::int32_t height = 0;
  ASSERT_EQ(lumvik_host_get_mask(photo.get(), mask.data, mask.total(), &width, &height), LUMVIK_HOST_OK);
  cv::Mat alpha;
  cv::extractChannel(cutout, alpha, 3);
  EXPECT_EQ(cv::norm(alpha, mask, cv::NORM_INF), 0);

  EXPECT_EQ(lumvik_host_save_cutout(photo.get(), File("a.png").c_str(), nullptr), LUMVIK_HOST_EXISTS);
  EXPECT_EQ(lumvik_host_save_cutout(photo.get(), File("a.jpg").c_str(), nullptr),
            LUMVIK_HOST_INVALID_ARGUMENT);
  SetForTest(photo, {{"rotation", SettingValue(2.0F)}});
  EXPECT_EQ(lumvik_host_save_cutout(photo.get(), File("b.png").c_str(), nullptr), LUMVIK_HOST_UNSUPPORTED);
  EXPECT_THAT(lumvik_host_last_error(), HasSubstr("'rotation'"));
}

}  // namespace
}  // namespace lumvik::host::test
