// Whole files are reported as whole, truncated and corrupt ones as damaged.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <random>
#include <string>
#include <vector>

#include "integrity/integrity_check.h"
#include "support/allow_leaks.h"
#include "support/exif_jpeg.h"
#include "support/file_bytes.h"
#include "support/raw_kinds.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/tiff_tags.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::ReadBytes;
using lumvik::test::TempDir;
using lumvik::test::WriteBytes;
using ::testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;

struct CheckedFile {
  std::string name;
  lumvik_host_format format;
  Bytes bytes;
};

cv::Mat CheckedImage(int type) {
  cv::Mat image(70, 90, type);
  cv::RNG(3).fill(image, cv::RNG::UNIFORM, 0, CV_MAT_DEPTH(type) == CV_16U ? 65536 : 256);
  return image;
}

Bytes EncodeChecked(const std::string& extension, int type, const std::vector<int>& options = {}) {
  Bytes bytes;
  cv::imencode(extension, CheckedImage(type), bytes, options);
  return bytes;
}

// A gray BigTIFF of 16 x 4 pixels in one strip, in this byte order.
Bytes BigTiff(bool is_big_endian) {
  Bytes bytes;
  const auto append = [&](std::uint64_t number, unsigned width) {
    for (unsigned i = 0; i < width; ++i) {
      const unsigned shift = 8 * (is_big_endian ? width - 1 - i : i);
      bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    }
  };
  const auto entry = [&](unsigned tag, unsigned type, std::uint64_t value) {
    const unsigned width = type == 3 ? 2 : 8;
    append(tag, 2);
    append(type, 2);
    append(1, 8);
    append(value, width);
    append(0, 8 - width);
  };
  bytes = is_big_endian ? Bytes{'M', 'M'} : Bytes{'I', 'I'};
  append(43, 2);
  append(8, 2);
  append(0, 2);
  append(16, 8);
  constexpr std::uint64_t kEntries = 9;
  constexpr std::uint64_t kPixels = 16 + 8 + kEntries * 20 + 8;
  append(kEntries, 8);
  entry(256, 3, 16);
  entry(257, 3, 4);
  entry(258, 3, 8);
  entry(259, 3, 1);
  entry(262, 3, 1);
  entry(273, 16, kPixels);
  entry(277, 3, 1);
  entry(278, 3, 4);
  entry(279, 16, 64);
  append(0, 8);
  bytes.resize(kPixels + 64, 100);
  return bytes;
}

// A file of three boxes, of which the last has a 64-bit size.
Bytes BoxFile() {
  Bytes bytes = {0, 0, 0, 24, 'f', 't', 'y', 'p', 'c', 'r', 'x', ' '};
  bytes.resize(24);
  bytes.insert(bytes.end(), {0, 0, 0, 16, 'm', 'o', 'o', 'v', 0, 0, 0, 0, 0, 0, 0, 0});
  bytes.insert(bytes.end(), {0, 0, 0, 1, 'm', 'd', 'a', 't', 0, 0, 0, 0, 0, 0, 2, 0});
  bytes.resize(24 + 16 + 512);
  return bytes;
}

Bytes RafFile() {
  Bytes bytes(108);
  const std::string mark = "FUJIFILMCCD-RAW 0201";
  std::copy(mark.begin(), mark.end(), bytes.begin());
  bytes[86] = 1;  // a preview of 256 bytes at 256
  bytes[90] = 1;
  bytes[94] = 2;  // a header of 16 bytes at 512
  bytes[99] = 16;
  bytes[102] = 3;  // data of 512 bytes at 768
  bytes[106] = 2;
  bytes.resize(768 + 512);
  return bytes;
}

std::vector<CheckedFile> WholeFiles() {
  const std::vector<int> lzw = {cv::IMWRITE_TIFF_COMPRESSION, 5};
  const std::vector<int> plain = {cv::IMWRITE_TIFF_COMPRESSION, 1};
  std::vector<CheckedFile> files = {
      {"baseline.jpg", LUMVIK_HOST_FORMAT_JPEG, EncodeChecked(".jpg", CV_8UC3)},
      {"gray.jpg", LUMVIK_HOST_FORMAT_JPEG, EncodeChecked(".jpg", CV_8UC1)},
      {"progressive.jpg", LUMVIK_HOST_FORMAT_JPEG,
       EncodeChecked(".jpg", CV_8UC3, {cv::IMWRITE_JPEG_PROGRESSIVE, 1})},
      {"restarts.jpg", LUMVIK_HOST_FORMAT_JPEG,
       EncodeChecked(".jpg", CV_8UC3, {cv::IMWRITE_JPEG_RST_INTERVAL, 2})},
      {"exif.jpg", LUMVIK_HOST_FORMAT_JPEG, ReadBytes(LUMVIK_TEST_DATA "/tower_orientation8.jpg")},
      {"rgb.png", LUMVIK_HOST_FORMAT_PNG, EncodeChecked(".png", CV_8UC3)},
      {"deep.png", LUMVIK_HOST_FORMAT_PNG, EncodeChecked(".png", CV_16UC4)},
      {"gray.png", LUMVIK_HOST_FORMAT_PNG, EncodeChecked(".png", CV_8UC1)},
      {"plain.tif", LUMVIK_HOST_FORMAT_TIFF, EncodeChecked(".tif", CV_8UC3, plain)},
      {"lzw.tif", LUMVIK_HOST_FORMAT_TIFF, EncodeChecked(".tif", CV_16UC3, lzw)},
      {"big_little_endian.tif", LUMVIK_HOST_FORMAT_TIFF, BigTiff(false)},
      {"big_big_endian.tif", LUMVIK_HOST_FORMAT_TIFF, BigTiff(true)},
      {"a.bmp", LUMVIK_HOST_FORMAT_BMP, EncodeChecked(".bmp", CV_8UC3)},
      {"a.webp", LUMVIK_HOST_FORMAT_WEBP, EncodeChecked(".webp", CV_8UC3)},
      {"sample_small.ARW", LUMVIK_HOST_FORMAT_RAW, ReadBytes(LUMVIK_SAMPLES "/sample_small.ARW")},
      {"bitmap_thumb.dng", LUMVIK_HOST_FORMAT_RAW, ReadBytes(LUMVIK_TEST_DATA "/bitmap_thumb.dng")},
  };
  for (lumvik::test::RawKind& kind : lumvik::test::RawKinds()) {
    if (kind.name.find("missing") != std::string::npos) continue;
    files.push_back({kind.name, LUMVIK_HOST_FORMAT_RAW, std::move(kind.file)});
  }
  return files;
}

std::optional<Damage> DamageOf(const CheckedFile& file) {
  const TempDir dir;
  return FindDamage(WriteBytes(dir.File("photo"), file.bytes), file.format);
}

CheckedFile Truncated(CheckedFile file, std::size_t size) {
  file.bytes.resize(size);
  return file;
}

TEST(IntegrityTest, WholeFilesAreWhole) {
  for (const CheckedFile& file : WholeFiles()) {
    const auto damage = DamageOf(file);
    EXPECT_FALSE(damage) << file.name << ": " << damage->reason;
  }
}

TEST(IntegrityTest, TruncatedFilesAreDamaged) {
  constexpr std::size_t kParts = 16;
  for (const CheckedFile& file : WholeFiles()) {
    std::vector<std::size_t> sizes;
    for (std::size_t part = 1; part < kParts; ++part) sizes.push_back(file.bytes.size() * part / kParts);
    for (std::size_t missing = 1; missing <= 20; ++missing) sizes.push_back(file.bytes.size() - missing);
    for (const std::size_t size : sizes) {
      const auto damage = DamageOf(Truncated(file, size));
      ASSERT_TRUE(damage) << file.name << " of " << file.bytes.size() << " bytes cut to " << size;
      EXPECT_LE(damage->missing_bytes, file.bytes.size() - size) << file.name << ": " << damage->reason;
      EXPECT_FALSE(damage->reason.empty()) << file.name;
    }
  }
}

TEST(IntegrityTest, TinyPartsOfFilesAreDamaged) {
  for (const CheckedFile& file : WholeFiles()) {
    for (const std::size_t size : {0U, 1U, 4U, 8U, 9U, 12U, 20U, 30U}) {
      EXPECT_TRUE(DamageOf(Truncated(file, size))) << file.name << " cut to " << size;
    }
  }
}

TEST(IntegrityTest, MissingBytesAreCountedWhereTheFileStatesItsSize) {
  for (const CheckedFile& file : WholeFiles()) {
    if (file.format == LUMVIK_HOST_FORMAT_JPEG) continue;
    const auto damage = DamageOf(Truncated(file, file.bytes.size() - 5));
    ASSERT_TRUE(damage) << file.name;
    EXPECT_EQ(damage->missing_bytes, 5U) << file.name;
    EXPECT_EQ(damage->reason, "the data ends 5 bytes early") << file.name;
  }
}

TEST(IntegrityTest, TruncatedJpegSaysSo) {
  const Bytes jpeg = EncodeChecked(".jpg", CV_8UC3);
  const CheckedFile file = {"a.jpg", LUMVIK_HOST_FORMAT_JPEG, jpeg};
  EXPECT_EQ(DamageOf(Truncated(file, jpeg.size() / 2))->reason, "the JPEG ends in the middle of the image");
  EXPECT_EQ(DamageOf(Truncated(file, jpeg.size() - 2))->reason, "the JPEG ends in the middle of the image");
}

TEST(IntegrityTest, SampleCutInItsPixelsIsDamaged) {
  const auto damage = FindDamage(LUMVIK_TEST_DATA "/truncated.ARW", LUMVIK_HOST_FORMAT_RAW);
  ASSERT_TRUE(damage);
  EXPECT_GT(damage->missing_bytes, 0U);
}

TEST(IntegrityTest, DataBeyondTheEndIsDamage) {
  for (const lumvik::test::RawKind& kind : lumvik::test::RawKinds()) {
    if (kind.name.find("missing") == std::string::npos) continue;
    EXPECT_TRUE(DamageOf({kind.name, LUMVIK_HOST_FORMAT_RAW, kind.file})) << kind.name;
  }
}

TEST(IntegrityTest, BytesAfterTheEndDoNoHarm) {
  for (CheckedFile file : WholeFiles()) {
    file.bytes.resize(file.bytes.size() + 100, 'x');
    const auto damage = DamageOf(file);
    EXPECT_FALSE(damage) << file.name << ": " << damage->reason;
  }
}

TEST(IntegrityTest, EveryChangedByteOfAPngIsDamage) {
  const CheckedFile file = {"a.png", LUMVIK_HOST_FORMAT_PNG, EncodeChecked(".png", CV_8UC3)};
  for (std::size_t i = 8; i < file.bytes.size(); i += 97) {
    CheckedFile changed = file;
    changed.bytes[i] ^= 1U;
    EXPECT_TRUE(DamageOf(changed)) << i;
  }
}

TEST(IntegrityTest, CorruptEntropyCodesOfAJpegAreDamage) {
  CheckedFile file = {"a.jpg", LUMVIK_HOST_FORMAT_JPEG, EncodeChecked(".jpg", CV_8UC3)};
  const auto middle = file.bytes.begin() + static_cast<std::ptrdiff_t>(file.bytes.size() / 2);
  std::fill(middle, middle + 200, std::uint8_t{0});
  const auto damage = DamageOf(file);
  ASSERT_TRUE(damage);
  EXPECT_THAT(damage->reason, HasSubstr("the JPEG is corrupt: "));
}

TEST(IntegrityTest, CorruptStripOfATiffIsDamage) {
  CheckedFile file = {"a.tif", LUMVIK_HOST_FORMAT_TIFF,
                      EncodeChecked(".tif", CV_16UC3, {cv::IMWRITE_TIFF_COMPRESSION, 5})};
  std::fill(file.bytes.begin() + 1000, file.bytes.begin() + 1400, std::uint8_t{255});
  const auto damage = DamageOf(file);
  ASSERT_TRUE(damage);
  EXPECT_EQ(damage->reason, "the image data is corrupt");
}

TEST(IntegrityTest, CorruptSensorDataIsDamage) {
  for (const lumvik::test::RawKind& kind : lumvik::test::RawKinds()) {
    if (kind.decoder != "lossless_dng_load_raw()" || kind.name.find("missing") != std::string::npos) continue;
    CheckedFile file = {kind.name, LUMVIK_HOST_FORMAT_RAW, kind.file};
    const auto end = file.bytes.end() - 100;  // the sensor's data comes last
    std::fill(end - 400, end, std::uint8_t{255});
    EXPECT_TRUE(DamageOf(file)) << kind.name;
  }
}

TEST(IntegrityTest, CyclesAmongDirectoriesEnd) {
  Bytes tiff = {'I', 'I', 42, 0, 8, 0, 0, 0, 1, 0, 0x4A, 1, 4, 0, 1, 0, 0, 0, 8, 0, 0, 0, 8, 0, 0, 0};
  const auto damage = DamageOf({"cycle", LUMVIK_HOST_FORMAT_TIFF, tiff});
  ASSERT_TRUE(damage);
  EXPECT_EQ(damage->reason, "the image data is corrupt");
}

TEST(IntegrityTest, ContainersOfOtherMakersStateTheirSize) {
  for (const Bytes& bytes : {BoxFile(), RafFile()}) {
    const auto missing = DamageOf(Truncated({"raw", LUMVIK_HOST_FORMAT_RAW, bytes}, bytes.size() - 7));
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->missing_bytes, 7U);
    const auto whole = DamageOf({"raw", LUMVIK_HOST_FORMAT_RAW, bytes});
    ASSERT_TRUE(whole);  // it holds no image
    EXPECT_THAT(whole->reason, HasSubstr("LibRaw cannot decode it: "));
  }
}

TEST(IntegrityTest, MutatedFilesAreSurvived) {
  constexpr int kMutants = 25;
  std::mt19937 random(11);  // NOLINT: the same mutants in every run
  int damaged = 0;
  // LibRaw leaks the state of libjpeg when the JPEG image of a lossy DNG is damaged.
  const lumvik::test::AllowLeaks allow_leaks;
  for (const CheckedFile& file : WholeFiles()) {
    for (int i = 0; i < kMutants; ++i) {
      CheckedFile mutant = file;
      const std::size_t range =
          i % 2 == 0 ? std::min<std::size_t>(file.bytes.size(), 600) : file.bytes.size();
      for (int changes = 0; changes < 8; ++changes) {
        mutant.bytes[random() % range] = static_cast<std::uint8_t>(random());
      }
      if (DamageOf(mutant)) ++damaged;
    }
  }
  EXPECT_GT(damaged, 0);
}

}  // namespace
}  // namespace lumvik::host::test
