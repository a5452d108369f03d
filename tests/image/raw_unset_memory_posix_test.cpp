// The result of a RAW file depends only on its bytes, wherever the file was cut off: it never contains memory
// that was not written.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <tuple>

#include "analysis/perceptual_hash.h"
#include "image/guarded_libraw.h"
#include "image/raw_decoder.h"
#include "image/thumbnail.h"
#include "support/allow_leaks.h"
#include "support/file_bytes.h"
#include "support/poisoned_memory.h"
#include "support/raw_kinds.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;

std::tuple<bool, std::string, Bytes, Bytes> Decode(const std::string& path, int quality) {
  DecodedImage decoded;
  const bool success = DecodeRaw(path, quality, decoded);
  const cv::Mat& image = decoded.image;
  Bytes pixels(image.datastart, image.dataend);
  Bytes record;
  const auto add = [&record](const auto& field) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(&field);
    record.insert(record.end(), bytes, bytes + sizeof(field));
  };
  add(decoded.iso_speed);
  add(decoded.shutter);
  add(decoded.aperture);
  add(decoded.focal_len);
  add(decoded.make);
  add(decoded.model);
  add(decoded.cam_mul);
  add(decoded.orientation);
  add(decoded.rgb_cam);
  return {success, decoded.error, std::move(pixels), std::move(record)};
}

std::tuple<int, Bytes> ThumbnailOf(const std::string& path) {
  Thumbnail thumbnail;
  const int status = static_cast<int>(MakeThumbnail(path, thumbnail));
  return {status, Bytes(thumbnail.data.get(), thumbnail.data.get() + thumbnail.size)};
}

std::tuple<int, uint64_t> HashOf(const std::string& path) {
  uint64_t hash = 0;
  const int status = static_cast<int>(PerceptualHashOfFile(path, hash));
  return {status, hash};
}

// Whether the result of `read` is independent of what memory held before.
template <typename Read>
bool IsReproducible(const Read& read) {
  const auto result = [&read](uint8_t byte) {
    const PoisonedMemory poisoned(byte);
    return read();
  };
  // Small, since all large samples would be white.
  return result(0x05) == result(0x12);
}

void ExpectReproducible(const std::string& path) {
  for (const int quality : {kRawFull, kRawHalf}) {
    EXPECT_TRUE(IsReproducible([&] { return Decode(path, quality); })) << "quality " << quality;
  }
  EXPECT_TRUE(IsReproducible([&] { return ThumbnailOf(path); }));
  EXPECT_TRUE(IsReproducible([&] { return HashOf(path); }));
}

class RawUnsetMemoryTest : public ::testing::TestWithParam<RawKind> {
 protected:
  void ExpectReproducibleAt(size_t size) const {
    SCOPED_TRACE(size);
    const Bytes& file = GetParam().file;
    ExpectReproducible(
        WriteBytes(folder_.File("a"), {file.begin(), file.begin() + static_cast<std::ptrdiff_t>(size)}));
  }

  // LibRaw leaks the state of libjpeg when the JPEG image of a lossy DNG is damaged.
  const AllowLeaks allow_leaks_;
  const TempDir folder_;
};

TEST_P(RawUnsetMemoryTest, DoesNotShowInAWholeFile) {
  ExpectReproducibleAt(GetParam().file.size());
}

TEST_P(RawUnsetMemoryTest, DoesNotShowInACutFile) {
  constexpr size_t kTags = 1200;  // every file's directories
  constexpr size_t kTagStep = 37;
  constexpr size_t kDataSteps = 20;
  const size_t size = GetParam().file.size();
  for (size_t cut = 0; cut < kTags; cut += kTagStep) ExpectReproducibleAt(cut);
  for (size_t cut = kTags; cut < size; cut += size / kDataSteps) ExpectReproducibleAt(cut);
  ExpectReproducibleAt(size - 1);
}

// The last columns of such a sensor belong to no group of samples.
TEST(RawUnsetMemory, DoesNotShowInColumnsThatACompressedArwLacks) {
  constexpr int kSensorColumns = 50;
  const Bytes file = MakeRawFile(cv::Mat(32, 64, CV_8UC3, cv::Scalar::all(90)));
  const TempDir folder;
  for (const std::ptrdiff_t missing : {0, 1000}) {
    const std::string path = WriteBytes(folder.File("a.arw"), {file.begin(), file.end() - missing});
    EXPECT_TRUE(IsReproducible([&] {
      const auto raw = std::make_unique<GuardedLibRaw>();
      EXPECT_EQ(raw->OpenFile(path), LIBRAW_SUCCESS);
      raw->imgdata.sizes.raw_width = kSensorColumns;
      raw->imgdata.sizes.width = kSensorColumns;
      EXPECT_EQ(raw->UnpackSensor(), LIBRAW_SUCCESS);
      const uint16_t* samples = raw->imgdata.rawdata.raw_image;
      return std::vector<uint16_t>(samples, samples + kSensorColumns * raw->imgdata.sizes.raw_height);
    })) << missing;
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, RawUnsetMemoryTest, ::testing::ValuesIn(RawKinds()),
                         [](const auto& kind) { return kind.param.name; });

}  // namespace
}  // namespace lumvik::test
