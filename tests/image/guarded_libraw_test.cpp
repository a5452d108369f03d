// Files that crash LibRaw 0.20, or for which it delivers memory that was never in the file.
#include "image/guarded_libraw.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>

#include "support/file_bytes.h"
#include "support/raw_previews.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;
using ::testing::Each;

constexpr uint16_t kKodakCfaPattern = 0xFD09;
constexpr uint16_t kUniqueCameraModel = 0xC614;
constexpr uint16_t kLocalizedCameraModel = 0xC615;
constexpr uint16_t kImageDescription = 0x010E;
constexpr uint16_t kHasselbladOnly = 0xC51A;
constexpr int kSixBySix = 36;
constexpr int kModelLength = 20;

const cv::Mat kPicture(32, 48, CV_8UC3, cv::Scalar(90, 150, 210));

TiffDirectory Dng() {
  RawOptions options;
  options.format = RawFormat::kDng;
  options.preview = RawPreview::kNone;
  return MakeRawDirectory(kPicture, options);
}

// The file with another value `offset` bytes into the entry.
Bytes WithField(Bytes file, const Bytes& entry, size_t offset, uint32_t value) {
  const auto found = std::search(file.begin(), file.end(), entry.begin(), entry.end());
  EXPECT_NE(found, file.end());
  std::memcpy(&*found + offset, &value, sizeof(value));
  return file;
}

class GuardedLibRawTest : public ::testing::Test {
 protected:
  int Open(const Bytes& file) { return raw_->OpenFile(WriteBytes(folder_.File("a.dng"), file)); }

  const libraw_thumbnail_t& preview() const { return raw_->imgdata.thumbnail; }

  TempDir folder_;
  std::unique_ptr<GuardedLibRaw> raw_ = std::make_unique<GuardedLibRaw>();
};

TEST_F(GuardedLibRawTest, AnUndeclaredPatternOfSixBySix) {
  TiffDirectory dng = Dng();
  dng.SetBytes(tag::kCfaPattern, Bytes(kSixBySix, 1));
  EXPECT_EQ(Open(dng.Serialize()), LIBRAW_IO_ERROR);
}

TEST_F(GuardedLibRawTest, ADeclaredPatternOfSixBySix) {
  TiffDirectory dng = Dng();
  dng.SetShorts(tag::kCfaRepeatPatternDim, {6, 6});
  dng.SetBytes(tag::kCfaPattern, Bytes(kSixBySix, 1));
  EXPECT_EQ(Open(dng.Serialize()), LIBRAW_SUCCESS);
}

TEST_F(GuardedLibRawTest, AKodakPatternOfSixBySix) {
  TiffDirectory dng = Dng();
  dng.SetBytes(kKodakCfaPattern, Bytes(kSixBySix, 1));
  EXPECT_EQ(Open(dng.Serialize()), LIBRAW_IO_ERROR);
  dng.SetBytes(kKodakCfaPattern, {0, 1, 1, 2});
  EXPECT_EQ(Open(dng.Serialize()), LIBRAW_SUCCESS);
}

// LibRaw appends to such a name in a buffer for 63 characters.
TEST_F(GuardedLibRawTest, AHasselbladWithALongName) {
  for (const uint16_t name : {tag::kModel, kUniqueCameraModel, kLocalizedCameraModel}) {
    for (const size_t length : {56U, 57U, 63U, 200U}) {
      TiffDirectory dng = Dng();
      dng.SetAscii(tag::kMake, "Victor HASSELBLAD AB");
      dng.SetAscii(name, std::string(length, 'x'));
      EXPECT_EQ(Open(dng.Serialize()), length == 56 ? LIBRAW_SUCCESS : LIBRAW_IO_ERROR)
          << name << ", " << length;
    }
  }
}

TEST_F(GuardedLibRawTest, AHasselbladIdentifiedByAnyTag) {
  TiffDirectory by_its_own_tag = Dng();
  by_its_own_tag.SetAscii(tag::kMake, "");
  by_its_own_tag.SetLongs(kHasselbladOnly, {1});
  by_its_own_tag.SetAscii(tag::kModel, std::string(60, 'x'));
  EXPECT_EQ(Open(by_its_own_tag.Serialize()), LIBRAW_IO_ERROR);

  TiffDirectory by_its_unique_model = Dng();
  by_its_unique_model.SetAscii(tag::kMake, "");
  by_its_unique_model.SetAscii(tag::kModel, "");
  by_its_unique_model.SetAscii(kUniqueCameraModel, "Hasselblad " + std::string(52, 'x'));
  EXPECT_EQ(Open(by_its_unique_model.Serialize()), LIBRAW_IO_ERROR);
}

TEST_F(GuardedLibRawTest, AHasselbladWithAnUnterminatedModel) {
  TiffDirectory dng = Dng();
  dng.SetAscii(tag::kMake, "Hasselblad");
  dng.SetAscii(tag::kModel, std::string(kModelLength, 'x'));
  const Bytes file = dng.Serialize();
  ASSERT_EQ(Open(file), LIBRAW_SUCCESS);
  Bytes unended = file;
  const auto name = std::search_n(unended.begin(), unended.end(), kModelLength, 'x');
  std::fill_n(name, 60, 'x');
  EXPECT_EQ(Open(unended), LIBRAW_IO_ERROR);
}

TEST_F(GuardedLibRawTest, ALongNameOfAnotherMaker) {
  TiffDirectory dng = Dng();
  dng.SetAscii(tag::kModel, std::string(63, 'x'));
  EXPECT_EQ(Open(dng.Serialize()), LIBRAW_SUCCESS);
  EXPECT_EQ(raw_->imgdata.idata.model, std::string(63, 'x'));
}

TEST_F(GuardedLibRawTest, AHasselbladWithALongDescription) {
  TiffDirectory dng = Dng();
  dng.SetAscii(tag::kMake, "Hasselblad");
  dng.SetAscii(kImageDescription, std::string(200, 'x'));
  EXPECT_EQ(Open(dng.Serialize()), LIBRAW_SUCCESS);
}

// The start of an entry with one value.
Bytes Entry(uint16_t tag, uint8_t type) {
  return {static_cast<uint8_t>(tag & 0xFF), static_cast<uint8_t>(tag >> 8), type, 0, 1, 0, 0, 0};
}

constexpr uint8_t kShort = 3;
constexpr uint8_t kLong = 4;
constexpr size_t kValue = 8;  // position in an entry

// LibRaw takes a preview with compression 0 for separate color planes.
TEST_F(GuardedLibRawTest, PlanesLargerThanTheirSize) {
  Bytes file = WithField(MakeBitmapPreviewRaw(kPicture), Entry(tag::kCompression, kShort), kValue, 0);
  const auto bytes = static_cast<uint32_t>(kPicture.total());
  file = WithField(std::move(file), Entry(tag::kStripByteCounts, kLong), kValue, 3 * bytes);
  ASSERT_EQ(Open(file), LIBRAW_SUCCESS);
  ASSERT_EQ(preview().tlength, 3 * bytes);
  EXPECT_EQ(raw_->UnpackPreview(), LIBRAW_SUCCESS);
  EXPECT_EQ(preview().tlength, 3 * bytes);
  EXPECT_EQ(preview().thumb[0], 90);
}

// LibRaw allocates 100 bytes and reads the negative size as one larger than any file.
TEST_F(GuardedLibRawTest, StripsWhoseSumOverflows) {
  Bytes file = WithTwoValues(MakeBitmapPreviewRaw(kPicture), tag::kStripOffsets, {1000, 1000});
  file = WithTwoValues(std::move(file), tag::kStripByteCounts, {200, static_cast<uint32_t>(-100)});
  ASSERT_EQ(Open(file), LIBRAW_SUCCESS);
  EXPECT_EQ(raw_->UnpackPreview(), LIBRAW_UNSUPPORTED_THUMBNAIL);
}

TEST_F(GuardedLibRawTest, StripsWhoseSumOverflowsByOne) {
  Bytes file = WithTwoValues(MakeBitmapPreviewRaw(kPicture), tag::kStripOffsets, {1000, 1000});
  file = WithTwoValues(std::move(file), tag::kStripByteCounts, {std::numeric_limits<int32_t>::max(), 1});
  ASSERT_EQ(Open(file), LIBRAW_SUCCESS);
  EXPECT_EQ(raw_->UnpackPreview(), LIBRAW_UNSUPPORTED_THUMBNAIL);
}

TEST_F(GuardedLibRawTest, AnEmptyStrip) {
  Bytes file = WithTwoValues(MakeBitmapPreviewRaw(kPicture), tag::kStripOffsets, {1000, 1000});
  file = WithTwoValues(std::move(file), tag::kStripByteCounts, {200, 0});
  ASSERT_EQ(Open(file), LIBRAW_SUCCESS);
  ASSERT_EQ(raw_->UnpackPreview(), LIBRAW_SUCCESS);
  EXPECT_EQ(std::memcmp(preview().thumb, file.data() + 1000, 200), 0);
}

TEST_F(GuardedLibRawTest, TheMissingPartOfATruncatedBitmapIsZero) {
  const Bytes whole = MakeBitmapPreviewRaw(kPicture);
  const auto bytes = static_cast<uint32_t>(kPicture.total() * kPicture.elemSize());
  const auto begin = static_cast<uint32_t>(whole.size() - 100);
  ASSERT_EQ(Open(WithField(whole, Entry(tag::kStripOffsets, kLong), kValue, begin)), LIBRAW_SUCCESS);
  ASSERT_EQ(raw_->UnpackPreview(), LIBRAW_SUCCESS);
  ASSERT_EQ(preview().tlength, bytes);
  EXPECT_EQ(std::memcmp(preview().thumb, whole.data() + begin, 100), 0);
  EXPECT_THAT(Bytes(preview().thumb + 100, preview().thumb + bytes), Each(0));
}

}  // namespace
}  // namespace lumvik::test
