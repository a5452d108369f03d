// Null for every pointer of every function, in every state of a context: each call gives its documented
// result, stores no text and changes nothing.
#include <algorithm>
#include <cstring>
#include <fstream>
#include <functional>
#include <regex>
#include <set>

#include "api_test.h"
#include "float_setters.h"

namespace lumvik::test {
namespace {

// A call with null for one or all of its pointers; the context argument is used unless it is the null one.
struct NullCall {
  std::string function;
  const char* null;  // name of the null argument
  int result;
  std::function<int(EngineContext*)> call;
};

// Result of a void function.
constexpr int kNothing = 0;

const float kPoints[] = {0, 0.5F, 1, 1};

template <typename Function>
std::function<int(EngineContext*)> Silent(Function function) {
  return [function](EngineContext* context) {
    function(context);
    return kNothing;
  };
}

std::vector<NullCall> NullCalls() {
  static ExifInfo info;
  static uint8_t pixels[1];
  static uint32_t bins[LUMVIK_HISTOGRAM_BINS];
  static float value = 0;
  static float slots[LUMVIK_ENHANCE_SLOTS];
  static uint8_t* thumbnail;
  static int size;
  static uint64_t hash;
  std::vector<NullCall> calls = {
      {"lumvik_destroy_context", "ctx", kNothing, Silent([](auto*) { lumvik_destroy_context(nullptr); })},
      {"lumvik_last_error", "ctx", 0,
       [](auto*) { return std::strcmp(lumvik_last_error(nullptr), "null context"); }},
      {"lumvik_get_width", "ctx", 0, [](auto*) { return lumvik_get_width(nullptr); }},
      {"lumvik_get_height", "ctx", 0, [](auto*) { return lumvik_get_height(nullptr); }},
      {"lumvik_load_arw", "ctx", -1, [](auto*) { return lumvik_load_arw(nullptr, "a.png", 1); }},
      {"lumvik_load_arw", "path", -1, [](auto* c) { return lumvik_load_arw(c, nullptr, 1); }},
      {"lumvik_load_arw", "all", -1, [](auto*) { return lumvik_load_arw(nullptr, nullptr, 1); }},
      {"lumvik_unload", "ctx", kNothing, Silent([](auto*) { lumvik_unload(nullptr); })},
      {"lumvik_process", "ctx", -1, [](auto*) { return lumvik_process(nullptr); }},
      {"lumvik_get_preview", "ctx", -1, [](auto*) { return lumvik_get_preview(nullptr, pixels, 1); }},
      {"lumvik_get_preview", "out", -1, [](auto* c) { return lumvik_get_preview(c, nullptr, 1 << 20); }},
      {"lumvik_get_preview", "all", -1, [](auto*) { return lumvik_get_preview(nullptr, nullptr, 0); }},
      {"lumvik_get_histogram", "ctx", -1,
       [](auto*) { return lumvik_get_histogram(nullptr, bins, bins, bins, bins); }},
      {"lumvik_get_histogram", "red", -1,
       [](auto* c) { return lumvik_get_histogram(c, nullptr, bins, bins, bins); }},
      {"lumvik_get_histogram", "green", -1,
       [](auto* c) { return lumvik_get_histogram(c, bins, nullptr, bins, bins); }},
      {"lumvik_get_histogram", "blue", -1,
       [](auto* c) { return lumvik_get_histogram(c, bins, bins, nullptr, bins); }},
      {"lumvik_get_histogram", "luminance", -1,
       [](auto* c) { return lumvik_get_histogram(c, bins, bins, bins, nullptr); }},
      {"lumvik_get_histogram", "all", -1,
       [](auto*) { return lumvik_get_histogram(nullptr, nullptr, nullptr, nullptr, nullptr); }},
      {"lumvik_get_histogram", "all but ctx", -1,
       [](auto* c) { return lumvik_get_histogram(c, nullptr, nullptr, nullptr, nullptr); }},
      {"lumvik_segment_subject", "ctx", -1, [](auto*) { return lumvik_segment_subject(nullptr, -1, -1); }},
      {"lumvik_get_mask", "ctx", -1, [](auto*) { return lumvik_get_mask(nullptr, pixels, 1); }},
      {"lumvik_get_mask", "out", -1, [](auto* c) { return lumvik_get_mask(c, nullptr, 1 << 20); }},
      {"lumvik_get_mask", "all", -1, [](auto*) { return lumvik_get_mask(nullptr, nullptr, 0); }},
      {"lumvik_export_subject_png", "ctx", -1,
       [](auto*) { return lumvik_export_subject_png(nullptr, "a.png"); }},
      {"lumvik_export_subject_png", "path", -1,
       [](auto* c) { return lumvik_export_subject_png(c, nullptr); }},
      {"lumvik_export_subject_png", "all", -1,
       [](auto*) { return lumvik_export_subject_png(nullptr, nullptr); }},
      {"lumvik_get_exif", "ctx", -1, [](auto*) { return lumvik_get_exif(nullptr, &info); }},
      {"lumvik_get_exif", "info", -1, [](auto* c) { return lumvik_get_exif(c, nullptr); }},
      {"lumvik_get_exif", "all", -1, [](auto*) { return lumvik_get_exif(nullptr, nullptr); }},
      {"lumvik_export_jpeg", "ctx", -1, [](auto*) { return lumvik_export_jpeg(nullptr, "a", 90, 0, 1); }},
      {"lumvik_export_jpeg", "path", -1, [](auto* c) { return lumvik_export_jpeg(c, nullptr, 90, 0, 1); }},
      {"lumvik_export_jpeg", "all", -1, [](auto*) { return lumvik_export_jpeg(nullptr, nullptr, 90, 0, 1); }},
      {"lumvik_export_png", "ctx", -1, [](auto*) { return lumvik_export_png(nullptr, "a", 8); }},
      {"lumvik_export_png", "path", -1, [](auto* c) { return lumvik_export_png(c, nullptr, 16); }},
      {"lumvik_export_png", "all", -1, [](auto*) { return lumvik_export_png(nullptr, nullptr, 8); }},
      {"lumvik_export_tiff", "ctx", -1, [](auto*) { return lumvik_export_tiff(nullptr, "a"); }},
      {"lumvik_export_tiff", "path", -1, [](auto* c) { return lumvik_export_tiff(c, nullptr); }},
      {"lumvik_export_tiff", "all", -1, [](auto*) { return lumvik_export_tiff(nullptr, nullptr); }},
      {"lumvik_auto_exposure", "ctx", -1, [](auto*) { return lumvik_auto_exposure(nullptr, &value); }},
      {"lumvik_auto_exposure", "exposure", -1, [](auto* c) { return lumvik_auto_exposure(c, nullptr); }},
      {"lumvik_auto_exposure", "all", -1, [](auto*) { return lumvik_auto_exposure(nullptr, nullptr); }},
      {"lumvik_auto_white_balance", "ctx", -1,
       [](auto*) { return lumvik_auto_white_balance(nullptr, &value, &value); }},
      {"lumvik_auto_white_balance", "temperature", -1,
       [](auto* c) { return lumvik_auto_white_balance(c, nullptr, &value); }},
      {"lumvik_auto_white_balance", "tint", -1,
       [](auto* c) { return lumvik_auto_white_balance(c, &value, nullptr); }},
      {"lumvik_auto_white_balance", "all", -1,
       [](auto*) { return lumvik_auto_white_balance(nullptr, nullptr, nullptr); }},
      {"lumvik_auto_enhance", "ctx", -1, [](auto*) { return lumvik_auto_enhance(nullptr, slots); }},
      {"lumvik_auto_enhance", "slots", -1, [](auto* c) { return lumvik_auto_enhance(c, nullptr); }},
      {"lumvik_auto_enhance", "all", -1, [](auto*) { return lumvik_auto_enhance(nullptr, nullptr); }},
      {"lumvik_auto_crop", "ctx", -1,
       [](auto*) { return lumvik_auto_crop(nullptr, &value, &value, &value, &value); }},
      {"lumvik_auto_crop", "x", -1,
       [](auto* c) { return lumvik_auto_crop(c, nullptr, &value, &value, &value); }},
      {"lumvik_auto_crop", "y", -1,
       [](auto* c) { return lumvik_auto_crop(c, &value, nullptr, &value, &value); }},
      {"lumvik_auto_crop", "w", -1,
       [](auto* c) { return lumvik_auto_crop(c, &value, &value, nullptr, &value); }},
      {"lumvik_auto_crop", "h", -1,
       [](auto* c) { return lumvik_auto_crop(c, &value, &value, &value, nullptr); }},
      {"lumvik_auto_crop", "all", -1,
       [](auto*) { return lumvik_auto_crop(nullptr, nullptr, nullptr, nullptr, nullptr); }},
      {"lumvik_auto_straighten", "ctx", -1, [](auto*) { return lumvik_auto_straighten(nullptr, &value); }},
      {"lumvik_auto_straighten", "angle", -1, [](auto* c) { return lumvik_auto_straighten(c, nullptr); }},
      {"lumvik_auto_straighten", "all", -1, [](auto*) { return lumvik_auto_straighten(nullptr, nullptr); }},
      {"lumvik_set_flip_h", "ctx", kNothing, Silent([](auto*) { lumvik_set_flip_h(nullptr, 1); })},
      {"lumvik_set_flip_v", "ctx", kNothing, Silent([](auto*) { lumvik_set_flip_v(nullptr, 1); })},
      {"lumvik_set_crop", "ctx", kNothing, Silent([](auto*) { lumvik_set_crop(nullptr, 0, 0, 0.5F, 0.5F); })},
      {"lumvik_set_hsl", "ctx", kNothing, Silent([](auto*) { lumvik_set_hsl(nullptr, 0, 1, 2, 3); })},
      {"lumvik_set_split_toning", "ctx", kNothing,
       Silent([](auto*) { lumvik_set_split_toning(nullptr, 0, 1, 2, 3); })},
      {"lumvik_set_bg_blur", "ctx", kNothing, Silent([](auto*) { lumvik_set_bg_blur(nullptr, 50); })},
      {"lumvik_set_tone_curve", "ctx", kNothing,
       Silent([](auto*) { lumvik_set_tone_curve(nullptr, 0, kPoints, 2); })},
      {"lumvik_set_tone_curve", "points", kNothing,
       Silent([](auto* c) { lumvik_set_tone_curve(c, 0, nullptr, 2); })},
      {"lumvik_set_tone_curve", "all", kNothing,
       Silent([](auto*) { lumvik_set_tone_curve(nullptr, 0, nullptr, 2); })},
      {"lumvik_reset_tone_curve", "ctx", kNothing,
       Silent([](auto*) { lumvik_reset_tone_curve(nullptr, 0); })},
      {"lumvik_reset_adjustments", "ctx", kNothing, Silent([](auto*) { lumvik_reset_adjustments(nullptr); })},
      {"lumvik_extract_thumbnail", "path", -1,
       [](auto*) { return lumvik_extract_thumbnail(nullptr, &thumbnail, &size); }},
      {"lumvik_extract_thumbnail", "data", -1,
       [](auto*) { return lumvik_extract_thumbnail("a.png", nullptr, &size); }},
      {"lumvik_extract_thumbnail", "size", -1,
       [](auto*) { return lumvik_extract_thumbnail("a.png", &thumbnail, nullptr); }},
      {"lumvik_extract_thumbnail", "all", -1,
       [](auto*) { return lumvik_extract_thumbnail(nullptr, nullptr, nullptr); }},
      {"lumvik_free_thumb", "data", kNothing, Silent([](auto*) { lumvik_free_thumb(nullptr); })},
      {"lumvik_phash", "path", -1, [](auto*) { return lumvik_phash(nullptr, &hash); }},
      {"lumvik_phash", "hash", -1, [](auto*) { return lumvik_phash("a.png", nullptr); }},
      {"lumvik_phash", "all", -1, [](auto*) { return lumvik_phash(nullptr, nullptr); }},
  };
  for (const FloatSetter& setter : kFloatSetters) {
    calls.push_back({setter.name, "ctx", kNothing, Silent([set = setter.set](auto*) { set(nullptr, 50); })});
  }
  return calls;
}

// A state of the context, and how to reach it.
struct State {
  const char* name;
  std::function<void(EngineContext*, const std::string& picture)> reach;
};

void Load(EngineContext* context, const std::string& path) {
  ASSERT_EQ(lumvik_load_arw(context, path.c_str(), 1), LUMVIK_OK) << lumvik_last_error(context);
  lumvik_set_exposure(context, 0.5F);
  lumvik_set_tone_curve(context, 0, kPoints, 2);
}

void LoadAndRender(EngineContext* context, const std::string& path) {
  Load(context, path);
  ASSERT_EQ(lumvik_process(context), LUMVIK_OK);
}

// For an ordinary image, which cannot be segmented: the state after that failure.
void LoadAndSegment(EngineContext* context, const std::string& path) {
  LoadAndRender(context, path);
  const bool raw = !context->decoded.image.empty();
  ASSERT_EQ(lumvik_segment_subject(context, 0.5F, 0.5F), raw ? LUMVIK_OK : kFailed);
  ASSERT_EQ(context->mask_valid, raw);
}

const State kStates[] = {
    {"fresh", [](auto*, auto&) {}},
    {"loaded", Load},
    {"rendered", LoadAndRender},
    {"masked", LoadAndSegment},
    {"masked_and_unloaded",
     [](auto* context, auto& path) {
       LoadAndSegment(context, path);
       lumvik_unload(context);
     }},
    {"unloaded",
     [](auto* context, auto& path) {
       LoadAndRender(context, path);
       lumvik_unload(context);
     }},
    {"after_a_failed_load",
     [](auto* context, auto& path) {
       LoadAndRender(context, path);
       EXPECT_EQ(lumvik_load_arw(context, (path + ".missing.png").c_str(), 1), kFailed);
     }},
    {"after_a_failed_raw_load",
     [](auto* context, auto& path) {
       LoadAndRender(context, path);
       EXPECT_EQ(lumvik_load_arw(context, (path + ".missing.arw").c_str(), 1), kFailed);
     }},
    {"after_a_failed_export",
     [](auto* context, auto& path) {
       LoadAndRender(context, path);
       EXPECT_EQ(lumvik_export_tiff(context, (path + "/a.tif").c_str()), kFailed);
     }},
    {"after_an_exception",
     [](auto* context, auto& path) {
       LoadAndRender(context, path);
       EXPECT_THROW(lumvik_export_png(context, (path + ".unknown").c_str(), 8), cv::Exception);
     }},
};

class NullArgumentsTest : public ApiTest, public ::testing::WithParamInterface<State> {
 protected:
  void ExpectNothingChanged() const {
    const std::string before = Describe(*ctx());
    const char* text = lumvik_last_error(ctx());
    for (const NullCall& null : NullCalls()) {
      SCOPED_TRACE(null.function + " with null for " + null.null);
      EXPECT_EQ(null.call(ctx()), null.result);
      EXPECT_EQ(lumvik_last_error(ctx()), text);
      EXPECT_EQ(Describe(*ctx()), before);
    }
  }
};

TEST_P(NullArgumentsTest, ChangeNothing) {
  GetParam().reach(ctx(), WritePicture("a.png"));
  ExpectNothingChanged();
}

TEST_P(NullArgumentsTest, ChangeNothingWithARawFile) {
  GetParam().reach(ctx(), WriteRaw("a.arw"));
  ExpectNothingChanged();
}

INSTANTIATE_TEST_SUITE_P(States, NullArgumentsTest, ::testing::ValuesIn(kStates),
                         [](const auto& state) { return std::string(state.param.name); });

// The pointer arguments that lumvik.h declares, as "function argument".
std::set<std::string> DeclaredPointers() {
  const Bytes bytes = ReadBytes(LUMVIK_HEADER);
  const std::string header(bytes.begin(), bytes.end());
  const std::regex declaration("LUMVIK_API [^(]*?(lumvik_\\w+)\\(([^)]*)\\);");
  const std::regex pointer("\\* ?(\\w+)");
  std::set<std::string> pointers;
  const std::sregex_iterator end;
  for (std::sregex_iterator found(header.begin(), header.end(), declaration); found != end; ++found) {
    const std::string arguments = (*found)[2];
    for (std::sregex_iterator argument(arguments.begin(), arguments.end(), pointer); argument != end;
         ++argument) {
      pointers.insert((*found)[1].str() + " " + (*argument)[1].str());
    }
  }
  return pointers;
}

TEST(NullArgumentsTableTest, EveryPointerInTheHeaderIsInTheTable) {
  std::set<std::string> covered;
  for (const NullCall& null : NullCalls()) {
    if (std::string(null.null).rfind("all", 0) != 0) covered.insert(null.function + " " + null.null);
  }
  EXPECT_EQ(covered, DeclaredPointers());
}

TEST(NullArgumentsTableTest, EveryExportedFunctionIsInTheTable) {
  // These have no pointer argument.
  std::set<std::string> covered = {"lumvik_init", "lumvik_shutdown", "lumvik_version",
                                   "lumvik_create_context"};
  for (const NullCall& null : NullCalls()) covered.insert(null.function);
  std::set<std::string> exported;
  std::ifstream names(LUMVIK_TEST_DATA "/../api/exported_names.txt");
  for (std::string name; std::getline(names, name);) exported.insert(name);
  EXPECT_EQ(exported.size(), 68U);
  EXPECT_EQ(covered, exported);
}

TEST(NullArgumentsTableTest, OutputsAreNotWrittenForANullContext) {
  ExifInfo untouched;
  std::memset(&untouched, 0x5a, sizeof(untouched));
  ExifInfo info = untouched;
  EXPECT_EQ(lumvik_get_exif(nullptr, &info), kFailed);
  EXPECT_EQ(std::memcmp(&info, &untouched, sizeof(info)), 0);

  float values[4] = {7, 7, 7, 7};
  EXPECT_EQ(lumvik_auto_exposure(nullptr, values), kFailed);
  EXPECT_EQ(lumvik_auto_white_balance(nullptr, values, values + 1), kFailed);
  EXPECT_EQ(lumvik_auto_enhance(nullptr, values), kFailed);
  EXPECT_EQ(lumvik_auto_crop(nullptr, values, values + 1, values + 2, values + 3), kFailed);
  EXPECT_EQ(lumvik_auto_straighten(nullptr, values), kFailed);
  for (const float value : values) EXPECT_EQ(value, 7);
}

TEST_F(ApiTest, OutputsAreNotWrittenWhenAnotherOneIsNull) {
  LoadNeutral();
  float values[3] = {7, 7, 7};
  EXPECT_EQ(lumvik_auto_white_balance(ctx(), values, nullptr), kFailed);
  EXPECT_EQ(lumvik_auto_white_balance(ctx(), nullptr, values), kFailed);
  EXPECT_EQ(lumvik_auto_crop(ctx(), values, values + 1, values + 2, nullptr), kFailed);
  EXPECT_EQ(lumvik_auto_crop(ctx(), nullptr, values, values + 1, values + 2), kFailed);
  for (const float value : values) EXPECT_EQ(value, 7);
}

}  // namespace
}  // namespace lumvik::test
