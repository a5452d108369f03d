// Reading EXIF records from generated files.
#ifndef LUMVIK_TESTS_SUPPORT_EXIF_RECORD_H_
#define LUMVIK_TESTS_SUPPORT_EXIF_RECORD_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <string>

#include "image/exif_info.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::test {

// A record filled with garbage.
inline ExifInfo UsedRecord() {
  ExifInfo info;
  std::memset(&info, 0x5A, sizeof(info));
  return info;
}

// Expects an empty record: all bytes zero, except the position, which is NaN.
inline void ExpectEmpty(const ExifInfo& info) {
  const auto* bytes = reinterpret_cast<const uint8_t*>(&info);
  const auto position = static_cast<std::ptrdiff_t>(offsetof(ExifInfo, gps_latitude));
  EXPECT_EQ(std::count(bytes, bytes + position, 0), position);
  EXPECT_TRUE(std::isnan(info.gps_latitude));
  EXPECT_TRUE(std::isnan(info.gps_longitude));
}

// The record of a JPEG file with the block.
inline ExifInfo ReadRecord(const ExifBlock& exif) {
  const TempDir dir;
  ExifInfo info = UsedRecord();
  EXPECT_TRUE(ReadExifFile(WriteBytes(dir.File("a.jpg"), JpegWithExif(exif.Serialize())), info));
  return info;
}

// Names test instances by byte order.
inline std::string ByteOrderName(const ::testing::TestParamInfo<ByteOrder>& order) {
  return order.param == ByteOrder::kLittle ? "little" : "big";
}

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_EXIF_RECORD_H_
