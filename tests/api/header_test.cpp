// The interface as a C++ host sees it. Compiling proves the signatures, and that no declaration is noexcept:
// exceptions may leave a call.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include "lumvik.h"

namespace {

using FloatSetter = void(EngineContext*, float);
using IntSetter = void(EngineContext*, int);

static_assert(std::is_same_v<decltype(lumvik_init), int()>);
static_assert(std::is_same_v<decltype(lumvik_shutdown), void()>);
static_assert(std::is_same_v<decltype(lumvik_version), const char*()>);
static_assert(std::is_same_v<decltype(lumvik_create_context), EngineContext*()>);
static_assert(std::is_same_v<decltype(lumvik_destroy_context), void(EngineContext*)>);
static_assert(std::is_same_v<decltype(lumvik_last_error), const char*(EngineContext*)>);
static_assert(std::is_same_v<decltype(lumvik_get_width), int(EngineContext*)>);
static_assert(std::is_same_v<decltype(lumvik_get_height), int(EngineContext*)>);

static_assert(std::is_same_v<decltype(lumvik_load_arw), int(EngineContext*, const char*, int)>);
static_assert(std::is_same_v<decltype(lumvik_unload), void(EngineContext*)>);

static_assert(std::is_same_v<decltype(lumvik_process), int(EngineContext*)>);
static_assert(std::is_same_v<decltype(lumvik_get_preview), int(EngineContext*, uint8_t*, int)>);
static_assert(std::is_same_v<decltype(lumvik_get_histogram),
                             int(EngineContext*, uint32_t*, uint32_t*, uint32_t*, uint32_t*)>);

static_assert(std::is_same_v<decltype(lumvik_get_exif), int(EngineContext*, ExifInfo*)>);

static_assert(std::is_same_v<decltype(lumvik_export_jpeg), int(EngineContext*, const char*, int, int, int)>);
static_assert(std::is_same_v<decltype(lumvik_export_png), int(EngineContext*, const char*, int)>);
static_assert(std::is_same_v<decltype(lumvik_export_tiff), int(EngineContext*, const char*)>);

static_assert(std::is_same_v<decltype(lumvik_reset_adjustments), void(EngineContext*)>);
static_assert(std::is_same_v<decltype(lumvik_set_exposure), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_brightness), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_contrast), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_highlights), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_shadows), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_whites), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_blacks), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_temperature), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_tint), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_saturation), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_vibrance), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_tone_curve), void(EngineContext*, int, const float*, int)>);
static_assert(std::is_same_v<decltype(lumvik_reset_tone_curve), IntSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_clarity), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_texture), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_dehaze), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_hsl), void(EngineContext*, int, float, float, float)>);
static_assert(
    std::is_same_v<decltype(lumvik_set_split_toning), void(EngineContext*, int, float, float, float)>);
static_assert(std::is_same_v<decltype(lumvik_set_nr_luminance), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_nr_color), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_sharpening_amount), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_sharpening_radius), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_sharpening_threshold), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_distortion), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_ca_correction), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_lens_vignette), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_defringe), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_flip_h), IntSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_flip_v), IntSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_rotation), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_perspective_h), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_perspective_v), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_crop), void(EngineContext*, float, float, float, float)>);
static_assert(std::is_same_v<decltype(lumvik_set_vignette_amount), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_vignette_midpoint), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_vignette_roundness), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_grain_amount), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_set_grain_size), FloatSetter>);

static_assert(std::is_same_v<decltype(lumvik_auto_exposure), int(EngineContext*, float*)>);
static_assert(std::is_same_v<decltype(lumvik_auto_white_balance), int(EngineContext*, float*, float*)>);
static_assert(std::is_same_v<decltype(lumvik_auto_enhance), int(EngineContext*, float*)>);
static_assert(
    std::is_same_v<decltype(lumvik_auto_crop), int(EngineContext*, float*, float*, float*, float*)>);
static_assert(std::is_same_v<decltype(lumvik_auto_straighten), int(EngineContext*, float*)>);

static_assert(std::is_same_v<decltype(lumvik_segment_subject), int(EngineContext*, float, float)>);
static_assert(std::is_same_v<decltype(lumvik_get_mask), int(EngineContext*, uint8_t*, int)>);
static_assert(std::is_same_v<decltype(lumvik_set_bg_blur), FloatSetter>);
static_assert(std::is_same_v<decltype(lumvik_export_subject_png), int(EngineContext*, const char*)>);

static_assert(std::is_same_v<decltype(lumvik_extract_thumbnail), int(const char*, uint8_t**, int*)>);
static_assert(std::is_same_v<decltype(lumvik_free_thumb), void(void*)>);
static_assert(std::is_same_v<decltype(lumvik_phash), int(const char*, uint64_t*)>);

// Writes a value at the offset where a host in another language would access it.
template <typename T>
void Put(unsigned char* record, std::size_t offset, const T& value) {
  std::memcpy(record + offset, &value, sizeof(value));
}

TEST(HeaderTest, ExifInfoIsPlainData) {
  EXPECT_TRUE(std::is_trivially_copyable<ExifInfo>::value);
  EXPECT_TRUE(std::is_standard_layout<ExifInfo>::value);
  EXPECT_EQ(sizeof(ExifInfo), 336U);
}

TEST(HeaderTest, ExifInfoFieldsHaveTheirOffsets) {
  EXPECT_EQ(offsetof(ExifInfo, make), 0U);
  EXPECT_EQ(offsetof(ExifInfo, model), 64U);
  EXPECT_EQ(offsetof(ExifInfo, lens), 128U);
  EXPECT_EQ(offsetof(ExifInfo, focal_length), 256U);
  EXPECT_EQ(offsetof(ExifInfo, f_number), 260U);
  EXPECT_EQ(offsetof(ExifInfo, exposure_time), 264U);
  EXPECT_EQ(offsetof(ExifInfo, iso), 268U);
  EXPECT_EQ(offsetof(ExifInfo, datetime), 272U);
  EXPECT_EQ(offsetof(ExifInfo, width), 304U);
  EXPECT_EQ(offsetof(ExifInfo, height), 308U);
  EXPECT_EQ(offsetof(ExifInfo, orientation), 312U);
  EXPECT_EQ(offsetof(ExifInfo, reserved), 316U);
  EXPECT_EQ(offsetof(ExifInfo, gps_latitude), 320U);
  EXPECT_EQ(offsetof(ExifInfo, gps_longitude), 328U);
}

TEST(HeaderTest, ExifInfoReadsBackBytesWrittenByOffset) {
  unsigned char record[336] = {};
  std::memcpy(record, "Maker", 6);
  std::memcpy(record + 64, "Model", 6);
  std::memcpy(record + 128, "Lens", 5);
  Put(record, 256, 35.0F);
  Put(record, 260, 2.8F);
  Put(record, 264, 0.008F);
  Put(record, 268, std::int32_t{400});
  std::memcpy(record + 272, "2024:05:31 18:20:00", 20);
  Put(record, 304, std::int32_t{6000});
  Put(record, 308, std::int32_t{4000});
  Put(record, 312, std::int32_t{6});
  Put(record, 316, std::int32_t{-1});
  Put(record, 320, -52.5);
  Put(record, 328, std::numeric_limits<double>::quiet_NaN());

  ExifInfo info;
  std::memcpy(&info, record, sizeof(info));
  EXPECT_STREQ(info.make, "Maker");
  EXPECT_STREQ(info.model, "Model");
  EXPECT_STREQ(info.lens, "Lens");
  EXPECT_EQ(info.focal_length, 35.0F);
  EXPECT_EQ(info.f_number, 2.8F);
  EXPECT_EQ(info.exposure_time, 0.008F);
  EXPECT_EQ(info.iso, 400);
  EXPECT_STREQ(info.datetime, "2024:05:31 18:20:00");
  EXPECT_EQ(info.width, 6000);
  EXPECT_EQ(info.height, 4000);
  EXPECT_EQ(info.orientation, 6);
  EXPECT_EQ(info.reserved, -1);
  EXPECT_EQ(info.gps_latitude, -52.5);
  EXPECT_TRUE(std::isnan(info.gps_longitude));
}

TEST(HeaderTest, ExifInfoTextFieldSizes) {
  EXPECT_EQ(sizeof(ExifInfo::make), 64U);
  EXPECT_EQ(sizeof(ExifInfo::model), 64U);
  EXPECT_EQ(sizeof(ExifInfo::lens), 128U);
  EXPECT_EQ(sizeof(ExifInfo::datetime), 32U);
}

TEST(HeaderTest, StatesTheVersionOfTheLibrary) {
  EXPECT_EQ(lumvik_version(), std::to_string(LUMVIK_VERSION_MAJOR) + '.' +
                                  std::to_string(LUMVIK_VERSION_MINOR) + '.' +
                                  std::to_string(LUMVIK_VERSION_PATCH));
}

TEST(HeaderTest, ConstantValues) {
  EXPECT_EQ(LUMVIK_OK, 0);
  EXPECT_EQ(LUMVIK_HISTOGRAM_BINS, 256);
  EXPECT_EQ(LUMVIK_ENHANCE_SLOTS, 32);
  EXPECT_EQ(LUMVIK_CURVE_MASTER, 0);
  EXPECT_EQ(LUMVIK_CURVE_RED, 1);
  EXPECT_EQ(LUMVIK_CURVE_GREEN, 2);
  EXPECT_EQ(LUMVIK_CURVE_BLUE, 3);
  EXPECT_EQ(LUMVIK_BAND_RED, 0);
  EXPECT_EQ(LUMVIK_BAND_ORANGE, 1);
  EXPECT_EQ(LUMVIK_BAND_YELLOW, 2);
  EXPECT_EQ(LUMVIK_BAND_GREEN, 3);
  EXPECT_EQ(LUMVIK_BAND_AQUA, 4);
  EXPECT_EQ(LUMVIK_BAND_BLUE, 5);
  EXPECT_EQ(LUMVIK_BAND_PURPLE, 6);
  EXPECT_EQ(LUMVIK_BAND_MAGENTA, 7);
  EXPECT_EQ(LUMVIK_BAND_COUNT, 8);
  EXPECT_EQ(LUMVIK_ZONE_HIGHLIGHTS, 0);
  EXPECT_EQ(LUMVIK_ZONE_SHADOWS, 1);
}

}  // namespace
