// Whose code develops which RAW files.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "image/raw/known_libraw.h"
#include "image/raw_decoder.h"
#include "support/bayer_file.h"
#include "support/broken_raw.h"
#include "support/file_bytes.h"
#include "support/raw_kinds.h"
#include "support/temp_dir.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr char kTiles[] = "tiles";
constexpr char kLibRaw[] = "LibRaw";

// "none" if the decode failed.
std::string Developer(const Bytes& file, int quality) {
  const TempDir dir;
  DecodedImage decoded;
  if (!DecodeRaw(WriteBytes(dir.File("a"), file), quality, decoded)) return "none";
  return decoded.developer == RawDeveloper::kTiles ? kTiles : kLibRaw;
}

BayerFile WithBlack(cv::Size repeat, std::vector<double> black) {
  BayerFile file;
  file.black_repeat = repeat;
  file.black = std::move(black);
  return file;
}

BayerFile WithFormat(RawFormat format) {
  BayerFile file;
  file.format = format;
  file.black.resize(4);
  return file;
}

BayerFile WithPattern(std::vector<uint8_t> pattern) {
  BayerFile file;
  file.pattern = std::move(pattern);
  return file;
}

BayerFile WithNeutral(std::vector<double> neutral) {
  BayerFile file;
  file.neutral = std::move(neutral);
  return file;
}

BayerFile WithMargins(const BayerMargins& margins) {
  BayerFile file;
  file.margins = margins;
  return file;
}

Bytes WithAspect(uint32_t thousandths) {
  TiffDirectory directory = MakeBayerDirectory({});
  directory.SetRationals(tag::kDefaultScale, {{thousandths, 1000}, {1, 1}});
  return directory.Serialize();
}

Bytes FourColors() {
  TiffDirectory directory = MakeBayerDirectory(WithPattern({0, 1, 3, 2}));
  directory.SetBytes(tag::kCfaPlaneColor, {0, 1, 2, 3});
  return directory.Serialize();
}

// By its name, or empty: the file of one of LibRaw's decoders.
Bytes OfKind(const std::string& name) {
  for (const RawKind& kind : RawKinds()) {
    if (kind.name == name) return kind.file;
  }
  return {};
}

class RawDeveloperTest : public ::testing::Test {
 protected:
  void SetUp() override {
    constexpr int kCertainlyKnown = LIBRAW_MAKE_VERSION(0, 20, 2);
    if (LIBRAW_VERSION != kCertainlyKnown && !IsKnownLibRaw())
      GTEST_SKIP() << "LibRaw develops everything: its version is unknown";
  }
};

TEST_F(RawDeveloperTest, OrdinaryBayerFilesAreDevelopedInTiles) {
  const std::pair<const char*, Bytes> files[] = {
      {"DNG", MakeBayerFile({})},
      {"GRBG", MakeBayerFile(WithPattern({1, 0, 2, 1}))},
      {"GBRG", MakeBayerFile(WithPattern({1, 2, 0, 1}))},
      {"BGGR", MakeBayerFile(WithPattern({2, 1, 1, 0}))},
      {"compressed ARW", MakeBayerFile(WithFormat(RawFormat::kArwCompressed))},
      {"uncompressed ARW", MakeBayerFile(WithFormat(RawFormat::kArwUncompressed))},
      {"lossless DNG", OfKind("dng_lossless_no_preview")},
      {"packed DNG", OfKind("dng_packed_no_preview")},
      {"four black levels", MakeBayerFile(WithBlack({2, 2}, {10, 20, 30, 40}))},
      {"black above white", MakeBayerFile(WithBlack({1, 1}, {70000}))},
      {"margins", MakeBayerFile(WithMargins({4, 6, 8, 10}))},
      {"strong white balance", MakeBayerFile(WithNeutral({0.01, 1, 0.02}))},
      {"almost square pixels", WithAspect(1004)},
      {"smallest", MakeBayerFile([] {
         BayerFile file;
         file.size = {22, 22};
         return file;
       }())},
  };
  for (const auto& [name, file] : files) {
    for (int quality = 1; quality <= 4; ++quality) EXPECT_EQ(Developer(file, quality), kTiles) << name;
  }
}

TEST_F(RawDeveloperTest, LibRawDevelopsOtherFiles) {
  const std::pair<const char*, Bytes> files[] = {
      {"four colors", FourColors()},
      {"three planes", OfKind("dng_linear_no_preview")},
      {"JPEG", OfKind("dng_lossy_no_preview")},
      {"diagonal", MakeDiagonalRaw(60)},
      {"two blues", MakeBayerFile(WithPattern({2, 1, 2, 0}))},
      {"green columns", MakeBayerFile(WithPattern({0, 1, 2, 1}))},
      {"four rows", MakeBayerFile(WithPattern({0, 1, 1, 2, 2, 1, 1, 0}))},
      {"no white balance", MakeBayerFile(WithNeutral({}))},
      {"impossible white balance", MakeBayerFile(WithNeutral({1500, 1, 1500}))},
      {"eight equal black levels", MakeBayerFile(WithBlack({4, 2}, std::vector<double>(8, 64)))},
      {"eight black levels", MakeBayerFile(WithBlack({4, 2}, {1, 2, 3, 4, 5, 6, 7, 8}))},
      {"three black rows", MakeBayerFile(WithBlack({1, 3}, {1, 2, 3}))},
      {"wide pixels", WithAspect(2000)},
      {"barely wide pixels", WithAspect(1006)},
      {"columns beyond the sensor", MakeBayerFile(WithMargins({0, 8, 0, -4}))},
      {"rows beyond the sensor", MakeBayerFile(WithMargins({8, 0, -4, 0}))},
  };
  for (const auto& [name, file] : files) {
    for (int quality = 1; quality <= 4; ++quality) EXPECT_EQ(Developer(file, quality), kLibRaw) << name;
  }
  EXPECT_EQ(Developer(MakeUndevelopableRaw(), 2), kLibRaw) << "6 x 6 colors";
}

}  // namespace
}  // namespace lumvik::test
