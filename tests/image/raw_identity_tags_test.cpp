// RAW files with tags that change what LibRaw makes of an ordinary sensor.
#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "support/bayer_file.h"
#include "support/file_bytes.h"
#include "support/same_decode.h"
#include "support/temp_dir.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

constexpr uint16_t kLinearizationTable = 0xc618;
constexpr uint16_t kBlackLevelDeltaH = 0xc61b;
constexpr uint16_t kBlackLevelDeltaV = 0xc61c;
constexpr uint16_t kDefaultCropOrigin = 0xc61f;
constexpr uint16_t kDefaultCropSize = 0xc620;
constexpr uint16_t kColorMatrix2 = 0xc622;
constexpr uint16_t kCameraCalibration1 = 0xc623;
constexpr uint16_t kAnalogBalance = 0xc627;
constexpr uint16_t kAsShotWhiteXy = 0xc629;
constexpr uint16_t kBaselineExposure = 0xc62a;
constexpr uint16_t kLinearResponseLimit = 0xc62e;
constexpr uint16_t kCalibrationIlluminant2 = 0xc65b;
constexpr uint16_t kMaskedAreas = 0xc68e;

// Samples, levels and colors that leave every step something to do.
BayerFile Ordinary() {
  BayerFile file;
  file.size = {59, 43};
  file.margins = {4, 8, 2, 6};
  file.black_repeat = {2, 2};
  file.black = {500, 510, 505, 520};
  file.white = 16383;
  file.matrix = CommonColorMatrix();
  file.content = BayerContent::kNoise;
  return file;
}

struct TagCase {
  const char* name;
  std::function<void(TiffDirectory&)> change;
};

std::ostream& operator<<(std::ostream& out, const TagCase& tag_case) {
  return out << tag_case.name;
}

class RawIdentityTags : public ::testing::TestWithParam<TagCase> {
 protected:
  static void ExpectIdentity(const TiffDirectory& directory, int first_quality = 1) {
    const TempDir dir;
    const std::string path = WriteBytes(dir.File("a.dng"), directory.Serialize());
    for (int quality = first_quality; quality <= 4; ++quality) {
      SCOPED_TRACE(quality);
      const PlainDecode plain(path, quality);
      ASSERT_EQ(plain.Error(), "");
      ExpectSameDecode(path, quality, plain);
    }
  }
};

TEST_P(RawIdentityTags, AreObeyed) {
  TiffDirectory directory = MakeBayerDirectory(Ordinary());
  GetParam().change(directory);
  ExpectIdentity(directory);
}

std::vector<uint16_t> SquareRootTable() {
  constexpr uint32_t kEntries = 4096;
  std::vector<uint16_t> table;
  for (uint32_t i = 0; i < kEntries; ++i) table.push_back(static_cast<uint16_t>(i * i / (kEntries / 4)));
  return table;
}

using Directory = TiffDirectory;

INSTANTIATE_TEST_SUITE_P(
    RawIdentity, RawIdentityTags,
    ::testing::Values(TagCase{"Linearization",
                              [](Directory& d) { d.SetShorts(kLinearizationTable, SquareRootTable()); }},
                      TagCase{"ColumnBlack",
                              [](Directory& d) {
                                d.SetRationals(kBlackLevelDeltaH, {{40, 1}, {60, 1}});
                              }},
                      TagCase{"RowBlack",
                              [](Directory& d) {
                                d.SetRationals(kBlackLevelDeltaV, {{7, 1}, {8, 1}});
                              }},
                      TagCase{"NoBlack", [](Directory& d) { d.SetShorts(tag::kBlackLevel, {}); }},
                      TagCase{"MaskedArea",
                              [](Directory& d) {
                                d.SetLongs(kMaskedAreas, {0, 0, 49, 8});
                              }},
                      TagCase{"WidePixels",
                              [](Directory& d) {
                                d.SetRationals(tag::kDefaultScale, {{2, 1}, {1, 1}});
                              }},
                      TagCase{"TallPixels",
                              [](Directory& d) {
                                d.SetRationals(tag::kDefaultScale, {{1, 1}, {3, 2}});
                              }},
                      TagCase{"NearlySquarePixels",
                              [](Directory& d) {
                                d.SetRationals(tag::kDefaultScale, {{1004, 1000}, {1, 1}});
                              }},
                      TagCase{"BarelyWidePixels",
                              [](Directory& d) {
                                d.SetRationals(tag::kDefaultScale, {{1006, 1000}, {1, 1}});
                              }},
                      TagCase{"Crop",
                              [](Directory& d) {
                                d.SetLongs(kDefaultCropOrigin, {3, 5});
                                d.SetLongs(kDefaultCropSize, {40, 30});
                              }},
                      TagCase{"TwoMatrices",
                              [](Directory& d) {
                                d.SetReals(kColorMatrix2, {0.9, -0.3, -0.1, -0.4, 1.2, 0.2, -0.1, 0.2, 0.7});
                                d.SetShorts(kCalibrationIlluminant2, {17});
                              }},
                      TagCase{"Calibration",
                              [](Directory& d) {
                                d.SetReals(kCameraCalibration1, {1.1, 0, 0, 0, 1, 0, 0, 0, 0.9});
                              }},
                      TagCase{"AnalogBalance",
                              [](Directory& d) {
                                d.SetRationals(kAnalogBalance, {{12, 10}, {1, 1}, {8, 10}});
                              }},
                      TagCase{"WhitePoint",
                              [](Directory& d) {
                                d.SetRationals(kAsShotWhiteXy, {{31, 100}, {33, 100}});
                              }},
                      TagCase{"BaselineExposure", [](Directory& d) { d.SetReals(kBaselineExposure, {1.5}); }},
                      TagCase{"LinearResponse",
                              [](Directory& d) {
                                d.SetRationals(kLinearResponseLimit, {{8, 10}});
                              }},
                      TagCase{"NoWhite", [](Directory& d) { d.SetLongs(tag::kWhiteLevel, {0}); }},
                      TagCase{"OrientationZero", [](Directory& d) { d.SetShorts(tag::kOrientation, {0}); }},
                      TagCase{"OrientationNine", [](Directory& d) { d.SetShorts(tag::kOrientation, {9}); }},
                      TagCase{"FourColors",
                              [](Directory& d) {
                                d.SetBytes(tag::kCfaPattern, {0, 1, 3, 2});
                                d.SetBytes(tag::kCfaPlaneColor, {0, 1, 2, 3});
                                // LibRaw would take missing entries from the stack.
                                d.SetReals(tag::kColorMatrix1,
                                           {0.7, -0.2, -0.1, -0.5, 1.3, 0.3, -0.1, 0.2, 0.7, -0.3, 1.1, 0.4});
                              }},
                      TagCase{"PatternOfFourRows",
                              [](Directory& d) {
                                d.SetShorts(tag::kCfaRepeatPatternDim, {4, 2});
                                d.SetBytes(tag::kCfaPattern, {0, 1, 1, 2, 2, 1, 1, 0});
                              }},
                      TagCase{"CyanMagentaYellow",
                              [](Directory& d) {
                                d.SetBytes(tag::kCfaPattern, {3, 4, 4, 5});
                              }},
                      TagCase{"PlanesInReverse",
                              [](Directory& d) {
                                d.SetBytes(tag::kCfaPlaneColor, {2, 1, 0});
                              }}),
    [](const auto& tag_case) { return tag_case.param.name; });

// At full size LibRaw develops parts of such patterns from memory that it never wrote.
class RawIdentityPatterns : public RawIdentityTags {};

TEST_F(RawIdentityPatterns, WithoutABayerMosaicAtHalfSize) {
  const std::vector<std::vector<uint8_t>> patterns = {{0, 1, 2, 0}, {0, 1, 2, 1}, {1, 1, 0, 2}, {2, 1, 2, 0}};
  for (const std::vector<uint8_t>& pattern : patterns) {
    TiffDirectory directory = MakeBayerDirectory(Ordinary());
    directory.SetBytes(tag::kCfaPattern, pattern);
    ExpectIdentity(directory, kRawHalf);
  }
}

// Makers whose files LibRaw handles specially.
class RawIdentityMakers : public RawIdentityTags {};

TEST_F(RawIdentityMakers, AreObeyed) {
  const struct {
    const char *make, *model;
  } cameras[] = {{"Canon", "Canon EOS 5D Mark IV"},
                 {"NIKON CORPORATION", "NIKON D850"},
                 {"NIKON CORPORATION", "NIKON Z 7"},
                 {"SONY", "ILCE-7RM4"},
                 {"SONY", "DSC-F828"},
                 {"FUJIFILM", "GFX 100"},
                 {"FUJIFILM", "S5Pro"},
                 {"OLYMPUS CORPORATION", "E-M1MarkII"},
                 {"OLYMPUS IMAGING CORP.", "STYLUS1,1s"},
                 {"Panasonic", "DC-GH5"},
                 {"LEICA CAMERA AG", "LEICA M10"},
                 {"PENTAX", "PENTAX K-1"},
                 {"RICOH IMAGING COMPANY, LTD.", "PENTAX K-3"},
                 {"SAMSUNG", "NX1"},
                 {"Hasselblad", "X1D"},
                 {"Phase One", "IQ3 100MP"},
                 {"Leaf", "Aptus 75"},
                 {"Kodak", "DCS Pro 14N"},
                 {"EASTMAN KODAK COMPANY", "KODAK EASYSHARE Z1015 IS DIGITAL CAMERA"},
                 {"Minolta", "DiMAGE A2"},
                 {"SIGMA", "fp"},
                 {"DJI", "FC6310"},
                 {"Apple", "iPhone 12 Pro"},
                 {"Google", "Pixel 4"}};
  for (const auto& camera : cameras) {
    SCOPED_TRACE(std::string(camera.make) + ' ' + camera.model);
    for (const std::vector<double>& matrix : {CommonColorMatrix(), std::vector<double>()}) {
      BayerFile file = Ordinary();
      file.matrix = matrix;
      TiffDirectory directory = MakeBayerDirectory(file);
      directory.SetAscii(tag::kMake, camera.make);
      directory.SetAscii(tag::kModel, camera.model);
      ExpectIdentity(directory);
    }
  }
}

}  // namespace
}  // namespace lumvik::test
