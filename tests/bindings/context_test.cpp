// The C++ interface but for its setters: results, errors, ownership.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <numeric>
#include <regex>
#include <sstream>
#include <type_traits>

#include "lumvik.hpp"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

constexpr char kPhotograph[] = LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg";  // 600x400
constexpr char kRaw[] = LUMVIK_TEST_DATA "/jpeg_thumb.dng";
constexpr char kRawWithoutPreview[] = LUMVIK_TEST_DATA "/no_thumb.dng";
constexpr char kRawWithSubject[] = LUMVIK_SAMPLES "/sample_small.ARW";
constexpr char kMissing[] = "/nowhere/missing.jpg";
constexpr Size kPhotographSize{600, 400};

static_assert(!std::is_copy_constructible_v<Engine> && !std::is_copy_assignable_v<Engine>);
static_assert(std::is_nothrow_move_constructible_v<Engine> && std::is_nothrow_move_assignable_v<Engine>);

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

Engine Loaded(const std::string& path = kPhotograph) {
  Engine engine;
  engine.Load(path);
  return engine;
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

TEST(LibraryTest, StartsAndTellsItsVersion) {
  EXPECT_NO_THROW(Init());
  EXPECT_EQ(Version(), lumvik_version());
  Engine engine = Loaded();
  Shutdown();
  EXPECT_NO_THROW(engine.Process());
}

TEST(LoadTest, TellsTheSizeAndForgetsItAgain) {
  Engine engine = Loaded();
  ExpectSize(engine.size(), kPhotographSize);
  ExpectSize(engine.loaded_size(), kPhotographSize);
  engine.Unload();
  ExpectSize(engine.size(), {0, 0});
  ExpectSize(engine.loaded_size(), {0, 0});
}

TEST(LoadTest, DecodesInTheQualityAskedFor) {
  Engine full = Loaded(kRaw);
  Engine quarter;
  quarter.Load(kRaw, RawQuality::kQuarter);
  EXPECT_LT(quarter.size().width, full.size().width);
}

TEST(LoadTest, FailureKeepsTheImage) {
  Engine engine = Loaded();
  const std::string text = std::string("OpenCV could not read: ") + kMissing;
  ExpectError(-1, text, [&] { engine.Load(kMissing); });
  EXPECT_EQ(engine.LastError(), text);
  ExpectSize(engine.loaded_size(), kPhotographSize);
  ExpectSize(engine.size(), kPhotographSize);
}

TEST(ExifTest, IsThatOfTheFile) {
  EXPECT_STREQ(Loaded().Exif().model, "FinePixS2Pro");
}

TEST(RenderTest, PreviewHasTheSizeOfTheCrop) {
  Engine engine = Loaded();
  engine.SetCrop({0, 0, 0.5F, 0.25F});
  const Image preview = engine.Preview();
  ExpectSize({preview.width, preview.height}, {300, 100});
  EXPECT_EQ(preview.channels, 4);
  EXPECT_EQ(preview.data.size(), 300U * 100U * 4U);
  EXPECT_EQ(preview.data[3], 255);
  engine.SetCrop({});
  EXPECT_EQ(engine.Preview().data.size(), 600U * 400U * 4U) << "the larger render has its room again";
}

TEST(RenderTest, PreviewFillsTheHostsMemory) {
  Engine engine = Loaded();
  const Image expected = engine.Preview();
  std::vector<uint8_t> memory(expected.data.size());
  ExpectSize(engine.Preview(memory), kPhotographSize);
  EXPECT_TRUE(memory == expected.data);
  ExpectError(-1, "output buffer too small",
              [&] { engine.Preview(Bytes(memory.data(), memory.size() - 1)); });
  std::vector<uint8_t> none;
  ExpectError(-1, "output buffer too small", [&] { engine.Preview(none); });
}

TEST(RenderTest, ExportsTheLastRender) {
  const TempDir folder;
  const std::string path = folder.File("a.png");
  const std::string again = folder.File("b.png");
  Engine engine = Loaded();
  engine.Process();
  engine.ExportPng(path);
  engine.SetExposure(1);
  engine.ExportPng(again);
  EXPECT_TRUE(ReadFile(again) == ReadFile(path));
  engine.Process();
  engine.ExportPng(again);
  EXPECT_FALSE(ReadFile(again) == ReadFile(path));
}

TEST(HistogramTest, CountsEveryPixel) {
  const Histogram counts = Loaded().GetHistogram();
  for (const Histogram::Bins* bins : {&counts.red, &counts.green, &counts.blue, &counts.luminance}) {
    EXPECT_EQ(std::accumulate(bins->begin(), bins->end(), 0U), 600U * 400U);
  }
  EXPECT_TRUE(counts.red != counts.green && counts.green != counts.blue && counts.blue != counts.luminance);
}

TEST(ExportTest, WritesTheFormats) {
  const TempDir folder;
  Engine engine = Loaded();
  engine.ExportJpeg(folder.File("fine.jpg"), 95);
  engine.ExportJpeg(folder.File("coarse.jpg"), 10, false);
  const std::string fine = ReadFile(folder.File("fine.jpg"));
  const std::string coarse = ReadFile(folder.File("coarse.jpg"));
  EXPECT_TRUE(StartsWith(fine, "\xFF\xD8"));
  EXPECT_GT(fine.size(), 2 * coarse.size());
  EXPECT_NE(fine.find("FinePixS2Pro"), std::string::npos);
  EXPECT_EQ(coarse.find("FinePixS2Pro"), std::string::npos);
  engine.ExportPng(folder.File("8.png"));
  engine.ExportPng(folder.File("16.png"), BitDepth::k16);
  constexpr size_t kBitDepth = 24;  // where the header of a PNG has it
  EXPECT_EQ(ReadFile(folder.File("8.png")).at(kBitDepth), 8);
  EXPECT_EQ(ReadFile(folder.File("16.png")).at(kBitDepth), 16);
  engine.ExportTiff(folder.File("a.tif"));
  EXPECT_TRUE(StartsWith(ReadFile(folder.File("a.tif")), "II"));
}

TEST(ExportTest, Fails) {
  Engine engine = Loaded();
  ExpectError(-1, "JPEG write failed", [&] { engine.ExportJpeg("/nowhere/a.jpg"); });
  ExpectError(-1, "PNG write failed", [&] { engine.ExportPng("/nowhere/a.png"); });
  ExpectError(-1, "TIFF write failed", [&] { engine.ExportTiff("/nowhere/a.tif"); });
  EXPECT_THROW(engine.ExportPng("/nowhere/without_ending"), std::out_of_range);
  EXPECT_NO_THROW(engine.Process()) << "usable after an exception of the library";
}

TEST(AutoTest, SuggestsWhatTheCFunctionsSuggest) {
  Engine engine = Loaded();
  const std::unique_ptr<EngineContext, void (*)(EngineContext*)> context(lumvik_create_context(),
                                                                         lumvik_destroy_context);
  ASSERT_EQ(lumvik_load_arw(context.get(), kPhotograph, 1), LUMVIK_OK);
  float s[LUMVIK_ENHANCE_SLOTS];
  ASSERT_EQ(lumvik_auto_enhance(context.get(), s), LUMVIK_OK);
  const Enhancement e = engine.AutoEnhance();
  const std::vector<float> enhance = {
      e.exposure, e.brightness,           e.contrast,     e.highlights, e.shadows,  e.whites,
      e.blacks,   e.temperature,          e.tint,         e.saturation, e.vibrance, e.sharpening_amount,
      s[12],      e.sharpening_threshold, e.nr_luminance, e.nr_color};
  EXPECT_EQ(enhance, std::vector<float>(s, s + 16));
  float x = 0, y = 0, w = 0, h = 0;
  ASSERT_EQ(lumvik_auto_exposure(context.get(), &x), LUMVIK_OK);
  EXPECT_EQ(engine.AutoExposure(), x);
  ASSERT_EQ(lumvik_auto_straighten(context.get(), &x), LUMVIK_OK);
  EXPECT_EQ(engine.AutoStraighten(), x);
  ASSERT_EQ(lumvik_auto_crop(context.get(), &x, &y, &w, &h), LUMVIK_OK);
  const Crop crop = engine.AutoCrop();
  EXPECT_EQ((std::vector<float>{crop.x, crop.y, crop.w, crop.h}), (std::vector<float>{x, y, w, h}));
  const WhiteBalance balance = engine.AutoWhiteBalance();
  EXPECT_EQ(balance.temperature, 6500);
  EXPECT_EQ(balance.tint, 0);
}

TEST(SubjectTest, MaskHasTheSizeOfItsImage) {
  const TempDir folder;
  Engine engine;
  engine.Load(kRawWithSubject, RawQuality::kQuarter);
  engine.SegmentSubject(0.5F, 0.5F);
  const Size size = engine.loaded_size();
  ExpectSize(engine.mask_size(), size);
  const Image mask = engine.Mask();
  ExpectSize({mask.width, mask.height}, size);
  EXPECT_EQ(mask.channels, 1);
  EXPECT_GT(*std::max_element(mask.data.begin(), mask.data.end()), 0);
  engine.ExportSubjectPng(folder.File("a.png"));
  EXPECT_TRUE(StartsWith(ReadFile(folder.File("a.png")), "\x89PNG"));
  ExpectError(-2, "failed to write PNG", [&] { engine.ExportSubjectPng("/nowhere/a.png"); });

  const Image sharp = engine.Preview();
  engine.SetBackgroundBlur(100);
  EXPECT_FALSE(engine.Preview().data == sharp.data);

  engine.Load(kPhotograph);
  ExpectSize(engine.mask_size(), size);
  EXPECT_TRUE(engine.Mask().data == mask.data);
  std::vector<uint8_t> small(mask.data.size() - 1);
  ExpectError(-2, "output buffer too small", [&] { engine.Mask(small); });
}

TEST(SubjectTest, Fails) {
  Engine engine;
  ExpectError(-1, "no segmentation mask \u2014 call lumvik_segment_subject first", [&] { engine.Mask(); });
  ExpectError(-1, "no segmentation mask", [&] { engine.ExportSubjectPng("a.png"); });
  ExpectError(-1, "no image loaded", [&] { engine.SegmentSubject(); });
  engine.Load(kRaw);
  ExpectError(-2, "GrabCut failed", [&] { engine.SegmentSubject(2, 2); });
  ExpectSize(engine.mask_size(), {0, 0});
}

TEST(EmptyEngineTest, NeedsAnImage) {
  Engine engine;
  EXPECT_EQ(engine.LastError(), "");
  ExpectError(-1, "no image loaded", [&] { engine.Process(); });
  ExpectError(-1, "no image loaded", [&] { engine.Preview(); });
  ExpectError(-1, "no image loaded", [&] { engine.GetHistogram(); });
  ExpectError(-1, "no image loaded", [&] { engine.ExportJpeg("a.jpg"); });
  ExpectError(-1, "no image loaded", [&] { engine.ExportPng("a.png"); });
  ExpectError(-1, "no image loaded", [&] { engine.ExportTiff("a.tif"); });
  ExpectError(-1, "no image loaded", [&] { engine.AutoExposure(); });
  ExpectError(-1, "no image loaded", [&] { engine.AutoWhiteBalance(); });
  ExpectError(-1, "no image loaded", [&] { engine.AutoEnhance(); });
  ExpectError(-1, "no image loaded", [&] { engine.AutoCrop(); });
  ExpectError(-1, "no image loaded", [&] { engine.AutoStraighten(); });
  ExpectError(-1, "no file loaded", [&] { engine.Exif(); });
}

TEST(MoveTest, TakesThePhotographAlong) {
  Engine first = Loaded();
  Engine second = std::move(first);
  EXPECT_TRUE(second);
  EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): what is left is tested
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
  EXPECT_EQ(thumbnail[thumbnail.size() - 1], 0xD9) << "whole to its end";
}

TEST(PathToolTest, HashIsThatOfTheCFunction) {
  uint64_t hash = 0;
  ASSERT_EQ(lumvik_phash(kPhotograph, &hash), LUMVIK_OK);
  EXPECT_EQ(PerceptualHash(kPhotograph), hash);
}

TEST(PathToolTest, Fails) {
  const std::string missing = std::string("cannot read ") + kMissing;
  ExpectError(-1, missing, [] { ExtractThumbnail(kMissing); });
  ExpectError(-1, missing, [] { PerceptualHash(kMissing); });
  const std::string no_preview = std::string("no preview in ") + kRawWithoutPreview;
  ExpectError(-2, no_preview, [] { ExtractThumbnail(kRawWithoutPreview); });
  ExpectError(-2, no_preview, [] { PerceptualHash(kRawWithoutPreview); });
}

}  // namespace
}  // namespace lumvik::test
