#include "image/exif_data.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

std::vector<uint8_t> PhotographOfMaker(ByteOrder order) {
  ExifBlock exif(order);
  exif.Ascii(Ifd::kZero, EXIF_TAG_MAKE, "Maker");
  return JpegWithExif(exif.Serialize());
}

class LoadedExif : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::vector<uint8_t>& bytes) const {
    return WriteBytes(dir_.File(name), bytes);
  }

  TempDir dir_;
};

TEST_F(LoadedExif, KnowsTheByteOrder) {
  const ExifDataPtr little = LoadExifData(Write("a.jpg", PhotographOfMaker(ByteOrder::kLittle)));
  ASSERT_NE(little, nullptr);
  EXPECT_EQ(exif_data_get_byte_order(little.get()), EXIF_BYTE_ORDER_INTEL);
  const ExifDataPtr big = LoadExifData(Write("a.jpg", PhotographOfMaker(ByteOrder::kBig)));
  ASSERT_NE(big, nullptr);
  EXPECT_EQ(exif_data_get_byte_order(big.get()), EXIF_BYTE_ORDER_MOTOROLA);
}

TEST_F(LoadedExif, HoldsTheEntries) {
  const ExifDataPtr data = LoadExifData(Write("a.jpg", PhotographOfMaker(ByteOrder::kBig)));
  ASSERT_NE(data, nullptr);
  const ExifEntry* make = exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_MAKE);
  ASSERT_NE(make, nullptr);
  EXPECT_EQ(std::string(make->data, make->data + make->size), std::string("Maker", 6));
}

TEST_F(LoadedExif, NamesMayHoldSpacesAndAnyLetters) {
  EXPECT_NE(LoadExifData(Write("\xC3\xA9t\xC3\xA9 \xE5\x86\x99.jpg", PhotographOfMaker(ByteOrder::kBig))),
            nullptr);
}

TEST_F(LoadedExif, IsNullWithoutABlock) {
  EXPECT_EQ(LoadExifData(dir_.File("missing.jpg")), nullptr);
  EXPECT_EQ(LoadExifData(""), nullptr);
  EXPECT_EQ(LoadExifData(dir_.path().string()), nullptr);
  EXPECT_EQ(LoadExifData(Write("empty.jpg", {})), nullptr);
  EXPECT_EQ(LoadExifData(Write("plain.jpg", PlainJpeg())), nullptr);
  EXPECT_EQ(LoadExifData(Write("noise.jpg", std::vector<uint8_t>(5000, 'x'))), nullptr);
  EXPECT_EQ(LoadExifData(LUMVIK_SAMPLES "/sample_small.ARW"), nullptr);
  EXPECT_EQ(LoadExifData(LUMVIK_TEST_DATA "/no_thumb.dng"), nullptr);
}

TEST_F(LoadedExif, NobodyWaitsForAPipe) {
  const Deadline deadline;
  EXPECT_EQ(LoadExifData(MakePipe(dir_.File("pipe.jpg"))), nullptr);
}

}  // namespace
}  // namespace lumvik::test
