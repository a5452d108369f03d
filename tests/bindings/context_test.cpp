// The C++ interface except its setters: results, errors, ownership.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <numeric>
#include <regex>
#include <sstream>
#include <type_traits>

#include "lumvik.hpp"
#include "support/temp_dir.h"

namespace lumvik::engine::test {
namespace {

using lumvik::test::TempDir;

constexpr char kPhotograph[] = LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg";  // 600x400
constexpr char kRaw[] = LUMVIK_TEST_DATA "/jpeg_thumb.dng";
constexpr char kRawWithoutPreview[] = LUMVIK_TEST_DATA "/no_thumb.dng";
constexpr char kRawWithSubject[] = LUMVIK_SAMPLES "/sample_small.ARW";
constexpr char kMissing[] = "/nowhere/missing.jpg";
constexpr Size kPhotographSize{600, 400};

static_assert(!std::is_copy_constructible_v<Context> && !std::is_copy_assignable_v<Context>);
static_assert(std::is_nothrow_move_constructible_v<Context> && std::is_nothrow_move_assignable_v<Context>);

std::string ReadFile(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

bool StartsWith(const std::string& text, const std::string& start) {
  return text.rfind(start, 0) == 0;
}

void ExpectSize(Size size, Size expected) {
  EXPECT_EQ(size.width, expected.width);
  EXPECT_EQ(size.height, expected.height);
}

// Expects that `call` throws Error with this status and text.
template <typename Call>
void ExpectError(int status, const std::string& text, const Call& call) {
  try {
    call();
    ADD_FAILURE() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.status(), status);
    EXPECT_EQ(error.what(), text);
  }
}

Context Loaded(const std::string& path = kPhotograph) {
  Context photo;
  photo.Load(path);
  return photo;
}

TEST(CppHeaderTest, CallsEveryFunction) {
  const std::string header = ReadFile(LUMVIK_CPP_HEADER);
  std::ifstream names(LUMVIK_EXPORTED_NAMES);
  int count = 0;
  for (std::string name; std::getline(names, name); ++count) {
    EXPECT_TRUE(std::regex_search(header, std::regex("\\b" + name + "\\b"))) << name;
  }
  EXPECT_EQ(count, 68);
}

TEST(LibraryTest, StartsAndReportsItsVersion) {
  EXPECT_NO_THROW(Init());
  EXPECT_EQ(Version(), lumvik_version());
  Context photo = Loaded();
  Shutdown();
  EXPECT_NO_THROW(photo.Process());
}

TEST(LoadTest, SetsTheSizeUntilUnload) {
  Context photo = Loaded();
  ExpectSize(photo.size(), kPhotographSize);
  ExpectSize(photo.loaded_size(), kPhotographSize);
  photo.Unload();
  ExpectSize(photo.size(), {0, 0});
  ExpectSize(photo.loaded_size(), {0, 0});
}

TEST(LoadTest, DecodesAtTheRequestedQuality) {
  Context full = Loaded(kRaw);
  Context quarter;
  quarter.Load(kRaw, RawQuality::kQuarter);
  EXPECT_LT(quarter.size().width, full.size().width);
}

TEST(LoadTest, FailureKeepsTheImage) {
  Context photo = Loaded();
  const std::string text = std::string("OpenCV could not read: ") + kMissing;
  ExpectError(-1, text, [&] { photo.Load(kMissing); });
  EXPECT_EQ(photo.LastError(), text);
  ExpectSize(photo.loaded_size(), kPhotographSize);
  ExpectSize(photo.size(), kPhotographSize);
}

TEST(ExifTest, ComesFromTheFile) {
  EXPECT_STREQ(Loaded().Exif().model, "FinePixS2Pro");
}

TEST(RenderTest, PreviewHasTheSizeOfTheCrop) {
  Context photo = Loaded();
  photo.SetCrop({0, 0, 0.5F, 0.25F});
  const Image preview = photo.Preview();
  ExpectSize({preview.width, preview.height}, {300, 100});
  EXPECT_EQ(preview.channels, 4);
  EXPECT_EQ(preview.data.size(), 300U * 100U * 4U);
  EXPECT_EQ(preview.data[3], 255);
  photo.SetCrop({});
  EXPECT_EQ(photo.Preview().data.size(), 600U * 400U * 4U) << "the buffer grows again";
}

TEST(RenderTest, PreviewFillsTheHostsBuffer) {
  Context photo = Loaded();
  const Image expected = photo.Preview();
  std::vector<uint8_t> memory(expected.data.size());
  ExpectSize(photo.Preview(memory), kPhotographSize);
  EXPECT_TRUE(memory == expected.data);
  ExpectError(-1, "output buffer too small", [&] { photo.Preview(Bytes(memory.data(), memory.size() - 1)); });
  std::vector<uint8_t> none;
  ExpectError(-1, "output buffer too small", [&] { photo.Preview(none); });
}

TEST(RenderTest, ExportsTheLastRender) {
  const TempDir folder;
  const std::string path = folder.File("a.png");
  const std::string again = folder.File("b.png");
  Context photo = Loaded();
  photo.Process();
  photo.ExportPng(path);
  photo.SetExposure(1);
  photo.ExportPng(again);
  EXPECT_TRUE(ReadFile(again) == ReadFile(path));
  photo.Process();
  photo.ExportPng(again);
  EXPECT_FALSE(ReadFile(again) == ReadFile(path));
}

TEST(HistogramTest, CountsEveryPixel) {
  const Histogram counts = Loaded().GetHistogram();
  for (const Histogram::Bins* bins : {&counts.red, &counts.green, &counts.blue, &counts.luminance}) {
    EXPECT_EQ(std::accumulate(bins->begin(), bins->end(), 0U), 600U * 400U);
  }
  EXPECT_TRUE(counts.red != counts.green && counts.green != counts.blue && counts.blue != counts.luminance);
}

TEST(ExportTest, WritesEveryFormat) {
  const TempDir folder;
  Context photo = Loaded();
  photo.ExportJpeg(folder.File("fine.jpg"), 95);
  photo.ExportJpeg(folder.File("coarse.jpg"), 10, false);
  const std::string fine = ReadFile(folder.File("fine.jpg"));
  const std::string coarse = ReadFile(folder.File("coarse.jpg"));
  EXPECT_TRUE(StartsWith(fine, "\xFF\xD8"));
  EXPECT_GT(fine.size(), 2 * coarse.size());
  EXPECT_NE(fine.find("FinePixS2Pro"), std::string::npos);
  EXPECT_EQ(coarse.find("FinePixS2Pro"), std::string::npos);
  photo.ExportPng(folder.File("8.png"));
  photo.ExportPng(folder.File("16.png"), BitDepth::k16);
  constexpr size_t kBitDepth = 24;  // its offset in the header of a PNG
  EXPECT_EQ(ReadFile(folder.File("8.png")).at(kBitDepth), 8);
  EXPECT_EQ(ReadFile(folder.File("16.png")).at(kBitDepth), 16);
  photo.ExportTiff(folder.File("a.tif"));
  EXPECT_TRUE(StartsWith(ReadFile(folder.File("a.tif")), "II"));
}

TEST(ExportTest, ReportsFailures) {
  Context photo = Loaded();
  ExpectError(-1, "JPEG write failed", [&] { photo.ExportJpeg("/nowhere/a.jpg"); });
  ExpectError(-1, "PNG write failed", [&] { photo.ExportPng("/nowhere/a.png"); });
  ExpectError(-1, "TIFF write failed", [&] { photo.ExportTiff("/nowhere/a.tif"); });
  EXPECT_THROW(photo.ExportPng("/nowhere/without_extension"), std::out_of_range);
  EXPECT_NO_THROW(photo.Process()) << "usable after an exception";
}

TEST(AutoTest, SuggestsWhatTheCFunctionsSuggest) {
  Context photo = Loaded();
  const std::unique_ptr<EngineContext, void (*)(EngineContext*)> context(lumvik_create_context(),
                                                                         lumvik_destroy_context);
  ASSERT_EQ(lumvik_load_arw(context.get(), kPhotograph, 1), LUMVIK_OK);
  float s[LUMVIK_ENHANCE_SLOTS];
  ASSERT_EQ(lumvik_auto_enhance(context.get(), s), LUMVIK_OK);
  const Enhancement e = photo.AutoEnhance();
  const std::vector<float> enhance = {
      e.exposure, e.brightness,           e.contrast,     e.highlights, e.shadows,  e.whites,
      e.blacks,   e.temperature,          e.tint,         e.saturation, e.vibrance, e.sharpening_amount,
      s[12],      e.sharpening_threshold, e.nr_luminance, e.nr_color};
  EXPECT_EQ(enhance, std::vector<float>(s, s + 16));
  float x = 0, y = 0, w = 0, h = 0;
  ASSERT_EQ(lumvik_auto_exposure(context.get(), &x), LUMVIK_OK);
  EXPECT_EQ(photo.AutoExposure(), x);
  ASSERT_EQ(lumvik_auto_straighten(context.get(), &x), LUMVIK_OK);
  EXPECT_EQ(photo.AutoStraighten(), x);
  ASSERT_EQ(lumvik_auto_crop(context.get(), &x, &y, &w, &h), LUMVIK_OK);
  const Crop crop = photo.AutoCrop();
  EXPECT_EQ((std::vector<float>{crop.x, crop.y, crop.w, crop.h}), (std::vector<float>{x, y, w, h}));
  const WhiteBalance balance = photo.AutoWhiteBalance();
  EXPECT_EQ(balance.temperature, 6500);
  EXPECT_EQ(balance.tint, 0);
}

TEST(SubjectTest, MaskHasTheSizeOfTheImageItWasMadeFrom) {
  const TempDir folder;
  Context photo;
  photo.Load(kRawWithSubject, RawQuality::kQuarter);
  photo.SegmentSubject(0.5F, 0.5F);
  const Size size = photo.loaded_size();
  ExpectSize(photo.mask_size(), size);
  const Image mask = photo.Mask();
  ExpectSize({mask.width, mask.height}, size);
  EXPECT_EQ(mask.channels, 1);
  EXPECT_GT(*std::max_element(mask.data.begin(), mask.data.end()), 0);
  photo.ExportSubjectPng(folder.File("a.png"));
  EXPECT_TRUE(StartsWith(ReadFile(folder.File("a.png")), "\x89PNG"));
  ExpectError(-2, "failed to write PNG", [&] { photo.ExportSubjectPng("/nowhere/a.png"); });

  const Image sharp = photo.Preview();
  photo.SetBackgroundBlur(100);
  EXPECT_FALSE(photo.Preview().data == sharp.data);

  photo.Load(kPhotograph);
  ExpectSize(photo.mask_size(), size);
  EXPECT_TRUE(photo.Mask().data == mask.data);
  std::vector<uint8_t> small(mask.data.size() - 1);
  ExpectError(-2, "output buffer too small", [&] { photo.Mask(small); });
}

TEST(SubjectTest, ReportsFailures) {
  Context photo;
  ExpectError(-1, "no segmentation mask \u2014 call lumvik_segment_subject first", [&] { photo.Mask(); });
  ExpectError(-1, "no segmentation mask", [&] { photo.ExportSubjectPng("a.png"); });
  ExpectError(-1, "no image loaded", [&] { photo.SegmentSubject(); });
  photo.Load(kRaw);
  ExpectError(-2, "GrabCut failed", [&] { photo.SegmentSubject(2, 2); });
  ExpectSize(photo.mask_size(), {0, 0});
}

TEST(EmptyContextTest, NeedsAnImage) {
  Context photo;
  EXPECT_EQ(photo.LastError(), "");
  ExpectError(-1, "no image loaded", [&] { photo.Process(); });
  ExpectError(-1, "no image loaded", [&] { photo.Preview(); });
  ExpectError(-1, "no image loaded", [&] { photo.GetHistogram(); });
  ExpectError(-1, "no image loaded", [&] { photo.ExportJpeg("a.jpg"); });
  ExpectError(-1, "no image loaded", [&] { photo.ExportPng("a.png"); });
  ExpectError(-1, "no image loaded", [&] { photo.ExportTiff("a.tif"); });
  ExpectError(-1, "no image loaded", [&] { photo.AutoExposure(); });
  ExpectError(-1, "no image loaded", [&] { photo.AutoWhiteBalance(); });
  ExpectError(-1, "no image loaded", [&] { photo.AutoEnhance(); });
  ExpectError(-1, "no image loaded", [&] { photo.AutoCrop(); });
  ExpectError(-1, "no image loaded", [&] { photo.AutoStraighten(); });
  ExpectError(-1, "no file loaded", [&] { photo.Exif(); });
}

TEST(MoveTest, MovesThePhotograph) {
  Context first = Loaded();
  Context second = std::move(first);
  EXPECT_TRUE(second);
  EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): the moved-from state is tested
  EXPECT_NO_THROW(second.Process());
  ExpectError(-1, "null context", [&] { first.Process(); });
  ExpectError(-1, "null context", [&] { first.Load(kPhotograph); });
  first = std::move(second);
  EXPECT_EQ(first.Preview().width, kPhotographSize.width);
}

TEST(PathToolTest, ThumbnailIsAJpeg) {
  const std::vector<uint8_t> thumbnail = ExtractThumbnail(kPhotograph);
  ASSERT_GT(thumbnail.size(), 4U);
  EXPECT_EQ(thumbnail[0], 0xFF);
  EXPECT_EQ(thumbnail[1], 0xD8);
  EXPECT_EQ(thumbnail[thumbnail.size() - 1], 0xD9) << "complete";
}

TEST(PathToolTest, HashMatchesTheCFunction) {
  uint64_t hash = 0;
  ASSERT_EQ(lumvik_phash(kPhotograph, &hash), LUMVIK_OK);
  EXPECT_EQ(PerceptualHash(kPhotograph), hash);
}

TEST(PathToolTest, ReportsFailures) {
  const std::string missing = std::string("cannot read ") + kMissing;
  ExpectError(-1, missing, [] { ExtractThumbnail(kMissing); });
  ExpectError(-1, missing, [] { PerceptualHash(kMissing); });
  const std::string no_preview = std::string("no preview in ") + kRawWithoutPreview;
  ExpectError(-2, no_preview, [] { ExtractThumbnail(kRawWithoutPreview); });
  ExpectError(-2, no_preview, [] { PerceptualHash(kRawWithoutPreview); });
}

}  // namespace
}  // namespace lumvik::engine::test
