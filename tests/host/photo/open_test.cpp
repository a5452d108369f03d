// Opening photographs: by content, from memory, and what cannot be opened.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <string>

#include "photo/photo_source.h"
#include "photo/test_photos.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::TempDir;
using lumvik::test::WriteBytes;

constexpr lumvik_host_format kTestFormats[] = {LUMVIK_HOST_FORMAT_RAW, LUMVIK_HOST_FORMAT_JPEG,
                                               LUMVIK_HOST_FORMAT_PNG, LUMVIK_HOST_FORMAT_TIFF,
                                               LUMVIK_HOST_FORMAT_BMP, LUMVIK_HOST_FORMAT_WEBP};
constexpr const char* kTestNames[] = {"right.arw", "a.jpg",        "a.JPEG",  "a.tif",  "a.dng",
                                      "a.webp",    "no_extension", "ü.photo", ".hidden"};

class OpenFormatTest : public testing::TestWithParam<lumvik_host_format> {
 protected:
  TempDir folder_;
};

TEST_P(OpenFormatTest, IsRecognizedUnderAnyName) {
  const Bytes bytes = PhotoBytes(GetParam());
  for (const char* name : kTestNames) {
    std::int32_t format = 0;
    ASSERT_EQ(lumvik_host_identify(WriteBytes(folder_.File(name), bytes).c_str(), &format), LUMVIK_HOST_OK)
        << name << ": " << lumvik_host_last_error();
    EXPECT_EQ(format, GetParam()) << name;
  }
}

TEST_P(OpenFormatTest, GivesTheSameImageUnderAnyNameAndFromMemory) {
  const Bytes bytes = PhotoBytes(GetParam());
  const bool is_raw = GetParam() == LUMVIK_HOST_FORMAT_RAW;
  const std::string right_name = WriteBytes(folder_.File(is_raw ? "named.dng" : "named.png"), bytes);
  const TestPreview expected = EnginePreview(right_name, {});
  for (const char* name : kTestNames) {
    const PhotoHandle photo = OpenForTest(WriteBytes(folder_.File(name), bytes));
    EXPECT_EQ(PreviewForTest(photo), expected) << name;
    EXPECT_EQ(InfoForTest(photo).format, GetParam());
    EXPECT_EQ(InfoForTest(photo).width, expected.width);
    EXPECT_EQ(InfoForTest(photo).height, expected.height);
  }
  EXPECT_EQ(PreviewForTest(OpenBytesForTest(bytes)), expected);
}

INSTANTIATE_TEST_SUITE_P(Formats, OpenFormatTest, testing::ValuesIn(kTestFormats));

class OpenTest : public testing::Test {
 protected:
  // The status of opening a file, which must not write the handle.
  static lumvik_host_status Open(const std::string& path) {
    lumvik_host_photo* photo = nullptr;
    const lumvik_host_status status = lumvik_host_open(path.c_str(), nullptr, &photo);
    EXPECT_EQ(photo != nullptr, status == LUMVIK_HOST_OK);
    lumvik_host_close(photo);
    return status;
  }

  std::string Write(const std::string& name, const Bytes& bytes) {
    return WriteBytes(folder_.File(name), bytes);
  }

  TempDir folder_;
};

TEST_F(OpenTest, WhatIsNoPhotographIsRefusedWithTheReason) {
  EXPECT_EQ(Open(folder_.File("missing.jpg")), LUMVIK_HOST_NOT_FOUND);
  EXPECT_THAT(lumvik_host_last_error(), testing::EndsWith("missing.jpg': there is no such file"));
  EXPECT_EQ(Open(folder_.path().u8string()), LUMVIK_HOST_INVALID_ARGUMENT);
  EXPECT_THAT(lumvik_host_last_error(), testing::EndsWith("': it is a folder"));
  EXPECT_EQ(Open(Write("empty.jpg", {})), LUMVIK_HOST_NOT_A_PHOTOGRAPH);
  EXPECT_THAT(lumvik_host_last_error(), testing::EndsWith("empty.jpg' is empty"));
  for (const char* name : {"text.jpg", "text.arw", "text"}) {
    EXPECT_EQ(Open(Write(name, Bytes(5000, 'a'))), LUMVIK_HOST_NOT_A_PHOTOGRAPH);
    EXPECT_THAT(
        lumvik_host_last_error(),
        testing::EndsWith(std::string(name) + "' is neither a RAW file nor an image of a known format"));
  }
}

TEST_F(OpenTest, AnImageThatCannotBeDecodedIsDamaged) {
  for (const lumvik_host_format format : kTestFormats) {
    if (format == LUMVIK_HOST_FORMAT_RAW) continue;
    Bytes bytes = PhotoBytes(format);
    bytes.resize(40);
    EXPECT_EQ(Open(Write("cut", bytes)), LUMVIK_HOST_DAMAGED) << format;
    EXPECT_THAT(lumvik_host_last_error(), testing::StartsWith("cannot open '"));
  }
}

TEST_F(OpenTest, AnExactlyKnownHeaderIsNeeded) {
  for (const char* start : {"BM, as in other words", "RIFF????AVI data", "II", "\xFF\xD8"}) {
    std::string text(start);
    text.resize(3000, 'x');
    EXPECT_EQ(Open(Write("start.bmp", Bytes(text.begin(), text.end()))), LUMVIK_HOST_NOT_A_PHOTOGRAPH)
        << start;
  }
}

TEST_F(OpenTest, OptionsOutOfRangeAreRefused) {
  const std::string path = Write("a.jpg", PhotoBytes(LUMVIK_HOST_FORMAT_JPEG));
  for (const int quality : {-1, 5}) {
    lumvik_host_open_options options{};
    options.struct_size = sizeof(options);
    options.quality = quality;
    lumvik_host_photo* photo = nullptr;
    EXPECT_EQ(lumvik_host_open(path.c_str(), &options, &photo), LUMVIK_HOST_INVALID_ARGUMENT);
    EXPECT_EQ(photo, nullptr);
  }
}

TEST_F(OpenTest, BytesAreCopied) {
  Bytes bytes = PhotoBytes(LUMVIK_HOST_FORMAT_RAW);
  const TestPreview expected = PreviewForTest(OpenBytesForTest(bytes));
  const PhotoHandle photo = OpenBytesForTest(bytes);
  bytes.assign(bytes.size(), 0);
  EXPECT_EQ(PreviewForTest(photo), expected);
}

TEST_F(OpenTest, NoBytesAreNoPhotograph) {
  lumvik_host_photo* photo = nullptr;
  EXPECT_EQ(lumvik_host_open_bytes("", 0, nullptr, &photo), LUMVIK_HOST_NOT_A_PHOTOGRAPH);
  EXPECT_STREQ(lumvik_host_last_error(), "the photograph in memory is empty");
  EXPECT_EQ(photo, nullptr);
}

// The engine reads EXIF again, maybe when the process has another working folder.
TEST_F(OpenTest, TheServedPathStaysValid) {
  lumvik::test::ExifBlock exif;
  constexpr std::uint16_t kMakeTag = 0x010F;
  exif.Ascii(lumvik::test::Ifd::kZero, kMakeTag, "Maker");
  const Bytes bytes = lumvik::test::JpegWithExif(exif.Serialize());
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.path());
  Write("named.jpg", bytes);
  Write("unnamed", bytes);
  const auto sources = {PhotoSource::OfFile("named.jpg"), PhotoSource::OfFile("unnamed")};
  std::filesystem::current_path(before);
  for (const auto& source : sources) {
    const auto image = source->Load(1);
    ExifInfo info{};
    EXPECT_EQ(lumvik_get_exif(image->Context(), &info), 0);
    EXPECT_STREQ(info.make, "Maker");
  }
  const auto of_bytes = PhotoSource::OfBytes({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
  const auto image = of_bytes->Load(1);
  ExifInfo info{};
  EXPECT_EQ(lumvik_get_exif(image->Context(), &info), 0);
  EXPECT_STREQ(info.make, "Maker");
}

}  // namespace
}  // namespace lumvik::host::test
