// A profile that cannot be used does not fail a photograph, and a warning says so.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "color/color_profile.h"
#include "color/profile_attachment.h"
#include "color/profile_files.h"
#include "files/png_chunks.h"
#include "lumvik_host.h"
#include "photo/test_photos.h"

namespace lumvik::host::test {
namespace {

constexpr char kDamagedProfile[] =
    "the color profile of the photograph in memory was not used: it is damaged, so the colors are taken as "
    "sRGB\n";

std::string PlainFile(lumvik_host_format format) {
  const Bytes bytes = PhotoBytes(format);
  return {bytes.begin(), bytes.end()};
}

std::string WarningsOfOpening(const std::string& image) {
  const PhotoHandle photo = OpenBytesForTest(Bytes(image.begin(), image.end()));
  char* warnings = nullptr;
  EXPECT_EQ(lumvik_host_get_warnings(photo.get(), &warnings), LUMVIK_HOST_OK);
  const std::string text = warnings;
  lumvik_host_free(warnings);
  EXPECT_EQ(InfoForTest(photo).is_converted, 0);

  lumvik_host_save_options options{};
  options.struct_size = sizeof(options);
  options.format = LUMVIK_HOST_FORMAT_JPEG;
  std::uint8_t* data = nullptr;
  std::size_t size = 0;
  EXPECT_EQ(lumvik_host_save_bytes(photo.get(), &options, &data, &size), LUMVIK_HOST_OK)
      << lumvik_host_last_error();
  lumvik_host_free(data);
  EXPECT_EQ(lumvik_host_get_warnings(photo.get(), &warnings), LUMVIK_HOST_OK);
  EXPECT_EQ(warnings, text);  // those of opening stay
  lumvik_host_free(warnings);
  return text;
}

std::string WithJpegProfilePart(const std::string& part) {
  const std::string payload = std::string("ICC_PROFILE\0", 12) + part;
  std::string segment = "\xFF\xE2";
  segment += static_cast<char>((payload.size() + 2) >> 8U);
  segment += static_cast<char>((payload.size() + 2) & 0xFFU);
  return PlainFile(LUMVIK_HOST_FORMAT_JPEG).insert(2, segment + payload);
}

TEST(ProfileWarningsTest, AUsableProfileGivesNone) {
  for (const auto format : {LUMVIK_HOST_FORMAT_JPEG, LUMVIK_HOST_FORMAT_PNG, LUMVIK_HOST_FORMAT_TIFF}) {
    EXPECT_EQ(WarningsOfOpening(PlainFile(format)), "");
    EXPECT_EQ(WarningsOfOpening(AttachProfile(PlainFile(format), format, ColorProfile::Srgb().Serialize())),
              "");
  }
}

TEST(ProfileWarningsTest, GarbageIsNotUsed) {
  for (const auto format : {LUMVIK_HOST_FORMAT_JPEG, LUMVIK_HOST_FORMAT_PNG, LUMVIK_HOST_FORMAT_TIFF}) {
    EXPECT_EQ(WarningsOfOpening(AttachProfile(PlainFile(format), format, std::string(300, 'x'))),
              kDamagedProfile);
  }
}

TEST(ProfileWarningsTest, AMissingPartIsNoticed) {
  EXPECT_EQ(WarningsOfOpening(WithJpegProfilePart("\x01\x03" + std::string(300, 'x'))), kDamagedProfile);
  EXPECT_EQ(WarningsOfOpening(WithJpegProfilePart("\x01")), kDamagedProfile);
}

TEST(ProfileWarningsTest, ATruncatedProfileIsNotUsed) {
  const std::string icc = MakeRgbProfile(kAdobeLike);
  for (const auto format : {LUMVIK_HOST_FORMAT_JPEG, LUMVIK_HOST_FORMAT_PNG, LUMVIK_HOST_FORMAT_TIFF}) {
    EXPECT_EQ(WarningsOfOpening(AttachProfile(PlainFile(format), format, icc.substr(0, 200))),
              kDamagedProfile);
  }
}

TEST(ProfileWarningsTest, ACorruptStreamOfAPngIsNotUsed) {
  constexpr std::size_t kHeaderEnd = 33;
  for (const std::string& data : {std::string("name\0\0garbage", 13), std::string("no terminator")}) {
    EXPECT_EQ(
        WarningsOfOpening(PlainFile(LUMVIK_HOST_FORMAT_PNG).insert(kHeaderEnd, MakePngChunk("iCCP", data))),
        kDamagedProfile);
  }
}

TEST(ProfileWarningsTest, AGrayProfileDoesNotFitAColorImage) {
  const std::string image =
      AttachProfile(PlainFile(LUMVIK_HOST_FORMAT_PNG), LUMVIK_HOST_FORMAT_PNG, MakeGrayProfile(1.0));
  EXPECT_EQ(WarningsOfOpening(image),
            "the color profile of the photograph in memory was not used: it does not fit the image, so the "
            "colors are taken as sRGB\n");
}

}  // namespace
}  // namespace lumvik::host::test
