// The C++ interface of the host library wraps every function of the C interface.
#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <regex>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "lumvik_host.hpp"
#include "support/temp_dir.h"

namespace lumvik::api::test {
namespace {

using lumvik::test::TempDir;

constexpr char kPhotograph[] = LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg";  // 600x400
constexpr char kRawWithSubject[] = LUMVIK_SAMPLES "/sample_small.ARW";
constexpr char kMissing[] = "/nowhere/missing.jpg";

template <typename Handle>
constexpr bool kIsMoveOnly =
    !std::is_copy_constructible_v<Handle> && !std::is_copy_assignable_v<Handle> &&
    std::is_nothrow_move_constructible_v<Handle> && std::is_nothrow_move_assignable_v<Handle>;
static_assert(kIsMoveOnly<Settings> && kIsMoveOnly<Photo>);

std::string TextOf(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(path, std::ios::binary).rdbuf();
  return text.str();
}

// The names in the text that `pattern` captures.
std::set<std::string> NamesIn(const std::string& path, const char* pattern) {
  const std::string text = TextOf(path);
  const std::regex name(pattern);
  std::set<std::string> names;
  for (std::sregex_iterator match(text.begin(), text.end(), name), end; match != end; ++match) {
    names.insert((*match)[1]);
  }
  return names;
}

// Expects that `call` throws Error with this status and with `part` in its text.
template <typename Call>
void ExpectError(lumvik_host_status status, const std::string& part, const Call& call) {
  try {
    call();
    ADD_FAILURE() << "no error";
  } catch (const Error& error) {
    EXPECT_EQ(error.status(), status) << error.what();
    EXPECT_NE(std::string(error.what()).find(part), std::string::npos) << error.what();
  }
}

TEST(HostCppTest, WrapsEveryFunction) {
  const auto declared = NamesIn(LUMVIK_HOST_HEADER, R"(LUMVIK_HOST_API [\w ]+?[ *]*(lumvik_host_\w+)\()");
  // Also passed by name, as in `Made(lumvik_host_settings_read, ...)`.
  const auto used = NamesIn(LUMVIK_HOST_CPP_HEADER, R"(\b(lumvik_host_\w+)[(,);])");
  EXPECT_GT(declared.size(), 60U);
  for (const std::string& name : declared) EXPECT_EQ(used.count(name), 1U) << name;
}

TEST(HostCppTest, VersionIsThatOfTheLibrary) {
  EXPECT_EQ(Version(), lumvik_host_version());
  EXPECT_EQ(EngineVersion(), lumvik_host_engine_version());
  EXPECT_EQ(StatusName(LUMVIK_HOST_DAMAGED), "damaged");
}

TEST(HostCppTest, DescribesSettings) {
  const std::vector<SettingInfo> settings = DescribeSettings();
  ASSERT_EQ(settings.size(), lumvik_host_setting_count());
  const SettingInfo temperature = DescribeSetting(FindSetting("temperature"));
  EXPECT_EQ(temperature.neutral_value, 6500);
  EXPECT_EQ(temperature.engine_value, 5500);
  EXPECT_NE(DescribeSettingsJson().find("\"temperature\""), std::string::npos);
  ExpectError(LUMVIK_HOST_INVALID_ARGUMENT, "sepia", [] { FindSetting("sepia"); });
}

Settings Varied() {
  Settings settings;
  settings.SetNumber("exposure", 0.7F);
  settings.SetFlag("flip_h", true);
  settings.SetCurve("tone_curves.red", {{0, 0.1F}, {0.5F, 0.6F}, {1, 1}});
  return settings;
}

TEST(HostCppTest, SettingsHoldValues) {
  const Settings settings = Varied();
  EXPECT_TRUE(settings.Has("exposure"));
  EXPECT_FALSE(settings.Has("tint"));
  EXPECT_EQ(settings.Number("exposure"), 0.7F);
  EXPECT_EQ(settings.Number("temperature"), 6500);
  EXPECT_TRUE(settings.Flag("flip_h"));
  EXPECT_FALSE(settings.Flag("flip_v"));
  const std::vector<CurvePoint> curve = settings.Curve("tone_curves.red");
  ASSERT_EQ(curve.size(), 3U);
  EXPECT_EQ(curve[1].x, 0.5F);
  EXPECT_EQ(curve[1].y, 0.6F);
  EXPECT_TRUE(settings.Curve("tone_curves.blue").empty());
}

TEST(HostCppTest, SettingsAreChanged) {
  Settings settings = Varied();
  settings.Remove("exposure");
  EXPECT_FALSE(settings.Has("exposure"));
  settings.SetNumber("tint", 0);
  settings.RemoveNeutral();
  EXPECT_FALSE(settings.Has("tint"));
  settings.SetEngineValues();
  EXPECT_EQ(settings.Number("temperature"), 5500);
  settings.Merge(Varied());
  EXPECT_EQ(settings.Number("exposure"), 0.7F);
  settings.Clear();
  EXPECT_TRUE(settings.Equals(Settings()));
  settings.SetCurve("tone_curves.red", {});
  EXPECT_TRUE(settings.Equals(Settings()));
}

TEST(HostCppTest, SettingsRoundTrip) {
  const TempDir folder;
  const Settings settings = Varied();
  const std::string path = folder.File("look.json");
  settings.Write(path);
  ExpectError(LUMVIK_HOST_EXISTS, path, [&] { settings.Write(path); });
  settings.Write(path, true);
  settings.WritePreset("Look", folder.File("presets"));
  EXPECT_NE(ListPresets(folder.File("presets")).find("\"Look\""), std::string::npos);
  for (const Settings& read : {Settings::Read(path).Copy(), Settings::FromJson(settings.ToJson()),
                               Settings::ReadPreset("Look", folder.File("presets"))}) {
    EXPECT_TRUE(read.Equals(settings)) << read.ToJson();
  }
  EXPECT_EQ(FindSidecar(folder.File("look.ARW"), ".json"), path);
  EXPECT_EQ(FindSidecar(folder.File("other.ARW"), ".json"), std::nullopt);
}

TEST(HostCppTest, SettingsRoundTripThroughXmp) {
  RequireMetadataModule();
  const TempDir folder;
  const std::string xmp = Varied().ToXmp();
  WriteFile(folder.File("in.xmp"), xmp.data(), xmp.size());
  std::string report;
  EXPECT_TRUE(Settings::ImportXmp(folder.File("in.xmp"), &report).Equals(Varied()));
  EXPECT_NE(report.find("in.xmp"), std::string::npos);
}

TEST(HostCppTest, MovedSettingsThrow) {
  Settings settings = Varied();
  const Settings moved = std::move(settings);
  EXPECT_EQ(moved.Number("exposure"), 0.7F);
  ExpectError(LUMVIK_HOST_INVALID_HANDLE, "", [&] { settings.Clear(); });  // NOLINT(bugprone-use-after-move)
  settings = moved.Copy();
  EXPECT_TRUE(settings.Equals(moved));
}

TEST(HostCppTest, PhotosAreOpenedAndDescribed) {
  Photo photo(kPhotograph);
  const PhotoInfo info = photo.Info();
  EXPECT_EQ(info.format, LUMVIK_HOST_FORMAT_JPEG);
  EXPECT_EQ(info.width, 600);
  EXPECT_EQ(info.height, 400);
  EXPECT_EQ(photo.LastError(), "");
  EXPECT_NE(photo.Exif().gps_latitude, 0);
  EXPECT_NE(photo.CheckIntegrity().is_whole, 0);
  ExpectError(LUMVIK_HOST_NOT_FOUND, kMissing, [] { const Photo missing(kMissing); });

  const std::string bytes = TextOf(kPhotograph);
  EXPECT_EQ(Photo(bytes.data(), bytes.size()).Info().width, 600);
}

TEST(HostCppTest, PhotosAreRendered) {
  Photo photo(kPhotograph);
  photo.SetSettings(Varied());
  EXPECT_TRUE(photo.GetSettings().Equals(Varied()));
  photo.Render();
  PreviewOptions options;
  options.max_width = 60;
  options.channels = 3;
  options.stride = 1000;  // not used
  const Image preview = photo.Preview(options);
  EXPECT_EQ(preview.width, 60);
  EXPECT_EQ(preview.height, 40);
  EXPECT_EQ(preview.channels, 3);
  EXPECT_EQ(preview.data.size(), 60U * 40 * 3);
  Bytes pixels(preview.data.size());
  options.stride = 0;
  EXPECT_EQ(photo.Preview(pixels.data(), pixels.size(), options).height, 40);
  EXPECT_EQ(pixels, preview.data);
  ExpectError(LUMVIK_HOST_BUFFER_TOO_SMALL, "",
              [&] { photo.Preview(pixels.data(), pixels.size() - 1, options); });

  const Histogram histogram = photo.GetHistogram();
  EXPECT_EQ(std::accumulate(std::begin(histogram.luminance), std::end(histogram.luminance), 0U), 600U * 400);
  photo.ResetSettings();
  EXPECT_TRUE(photo.GetSettings().Equals(Settings()));
}

TEST(HostCppTest, PostedRendersCallBackOnce) {
  Photo photo(kPhotograph);
  std::atomic<int> calls = 0;
  std::atomic<int> width = 0;
  const std::uint64_t ticket = photo.Post(Varied(), [&](const Frame& frame) {
    width = frame.width;
    ++calls;
    throw std::runtime_error("dropped");
  });
  EXPECT_EQ(photo.Wait(ticket), LUMVIK_HOST_OK);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(width, 600);
  EXPECT_GT(photo.Post(), ticket);
  EXPECT_EQ(photo.Wait(), LUMVIK_HOST_OK);
  photo.Cancel();
}

TEST(HostCppTest, SubjectsAreFound) {
  Photo photo(kRawWithSubject);
  photo.WaitForQuality();
  photo.SetQuality(4);
  ExpectError(LUMVIK_HOST_NOT_FOUND, "", [&] { photo.Mask(); });
  photo.FindSubject();
  const Image mask = photo.Mask();
  EXPECT_EQ(mask.width, photo.Info().width);
  EXPECT_EQ(mask.channels, 1);
  EXPECT_TRUE(photo.Suggest(LUMVIK_HOST_SUGGEST_CROP).Has("crop.w"));

  const TempDir folder;
  photo.SaveCutout(folder.File("cutout.png"));
  EXPECT_EQ(Identify(folder.File("cutout.png")), LUMVIK_HOST_FORMAT_PNG);
}

TEST(HostCppTest, PhotosAreSaved) {
  const TempDir folder;
  Photo photo(kPhotograph);
  SaveOptions options;
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  const std::string path = folder.File("out.jpg");
  photo.Save(path, options);
  EXPECT_NE(CheckFile(path).is_whole, 0);
  options.format = LUMVIK_HOST_FORMAT_JPEG;
  const Bytes bytes = photo.SaveBytes(options);
  EXPECT_EQ(TextOf(path), std::string(bytes.begin(), bytes.end()));

  std::filesystem::resize_file(path, bytes.size() / 2);
  const Integrity damaged = CheckFile(path);
  EXPECT_EQ(damaged.is_whole, 0);
  EXPECT_STRNE(damaged.reason, "");
}

TEST(HostCppTest, FilesAreReadAndWritten) {
  const TempDir folder;
  WritePng(folder.File("gray.png"), {2, 1, 1, {0, 255}});
  EXPECT_EQ(Photo(folder.File("gray.png")).Info().width, 2);
  const Thumbnail thumbnail = ExtractThumbnail(kPhotograph);
  EXPECT_GT(thumbnail.size.width, 0);
  WriteFile(folder.File("thumb.jpg"), thumbnail.data.data(), thumbnail.data.size());
  EXPECT_EQ(Identify(folder.File("thumb.jpg")), LUMVIK_HOST_FORMAT_JPEG);
  EXPECT_NE(Hash(kPhotograph), Hash(kRawWithSubject));
  EXPECT_EQ(ReadSize(kPhotograph).width, 600);
  EXPECT_EQ(FormatOf("a.TIFF"), LUMVIK_HOST_FORMAT_TIFF);
  EXPECT_EQ(ExtensionOf(LUMVIK_HOST_FORMAT_TIFF), ".tif");
  EXPECT_EQ(ExtensionOf(LUMVIK_HOST_FORMAT_RAW), "");
}

}  // namespace
}  // namespace lumvik::api::test
