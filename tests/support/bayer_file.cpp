#include "support/bayer_file.h"

#include <algorithm>
#include <cmath>

#include "support/bayer_samples.h"
#include "support/file_bytes.h"
#include "support/sony_arw2.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

constexpr uint16_t kColorFilterArray = 32803;  // a photometric interpretation

bool IsDng(const BayerFile& file) {
  return file.format == RawFormat::kDng;
}

Rational Fraction(double value) {
  constexpr double kFew = 100;
  const uint32_t denominator = value < kFew ? 10'000'000 : 1000;
  return {static_cast<uint32_t>(std::llround(value * denominator)), denominator};
}

std::vector<Rational> Fractions(const std::vector<double>& values) {
  std::vector<Rational> fractions(values.size());
  std::transform(values.begin(), values.end(), fractions.begin(), Fraction);
  return fractions;
}

void SetSensor(TiffDirectory& directory, const BayerFile& file) {
  constexpr uint16_t kUncompressed = 1;
  constexpr uint16_t kArwBits = 14;
  const bool compressed = file.format == RawFormat::kArwCompressed;
  const cv::Mat samples = BayerSamples(file);
  const auto rows = static_cast<uint32_t>(samples.rows);
  directory.SetLongs(tag::kNewSubfileType, {0});
  directory.SetLongs(tag::kImageWidth, {static_cast<uint32_t>(samples.cols)});
  directory.SetLongs(tag::kImageLength, {rows});
  directory.SetShorts(tag::kBitsPerSample, {IsDng(file) ? uint16_t{16} : kArwBits});
  directory.SetShorts(tag::kCompression, {compressed ? kSonyCompressed : kUncompressed});
  directory.SetShorts(tag::kPhotometric, {kColorFilterArray});
  directory.SetShorts(tag::kSamplesPerPixel, {1});
  directory.SetLongs(tag::kRowsPerStrip, {rows});
  directory.SetData(tag::kStripOffsets, tag::kStripByteCounts,
                    compressed ? EncodeArw2(samples) : BytesOf(samples));
  directory.SetShorts(tag::kCfaRepeatPatternDim, {static_cast<uint16_t>(file.pattern.size() / 2), 2});
  directory.SetBytes(tag::kCfaPattern, file.pattern);
  const auto top = static_cast<uint32_t>(file.margins.top);
  const auto left = static_cast<uint32_t>(file.margins.left);
  directory.SetLongs(tag::kActiveArea, {top, left, top + static_cast<uint32_t>(file.size.height),
                                        left + static_cast<uint32_t>(file.size.width)});
}

void SetDngLevels(TiffDirectory& directory, const BayerFile& file) {
  directory.SetBytes(tag::kDngVersion, {1, 4, 0, 0});
  directory.SetBytes(tag::kCfaPlaneColor, {0, 1, 2});
  directory.SetShorts(tag::kCfaLayout, {1});
  directory.SetShorts(tag::kBlackLevelRepeatDim, {static_cast<uint16_t>(file.black_repeat.height),
                                                  static_cast<uint16_t>(file.black_repeat.width)});
  directory.SetRationals(tag::kBlackLevel, Fractions(file.black));
  directory.SetLongs(tag::kWhiteLevel, {static_cast<uint32_t>(file.white)});
  if (!file.neutral.empty()) directory.SetRationals(tag::kAsShotNeutral, Fractions(file.neutral));
  if (!file.matrix.empty()) {
    directory.SetReals(tag::kColorMatrix1, file.matrix);
    directory.SetShorts(tag::kCalibrationIlluminant1, {kIlluminantD65});
  }
}

void SetArwLevels(TiffDirectory& directory, const BayerFile& file) {
  std::vector<uint16_t> black;
  for (const double level : file.black) black.push_back(static_cast<uint16_t>(level));
  directory.SetShorts(tag::kSonyToneCurve, {kArw2CurveKnees.begin(), kArw2CurveKnees.end()});
  directory.SetShorts(tag::kSonyBlackLevel, black);
  directory.SetShorts(tag::kSonyRggbLevels, {file.arw_levels.begin(), file.arw_levels.end()});
}

template <typename Value>
void Print(std::ostream& out, const char* name, const std::vector<Value>& values) {
  out << ", " << name;
  for (const Value& value : values) out << ' ' << +value;
}

}  // namespace

std::vector<double> CommonColorMatrix() {
  return {0.7374, -0.2389, -0.0551, -0.5435, 1.3162, 0.2519, -0.1006, 0.1795, 0.6552};
}

TiffDirectory MakeBayerDirectory(const BayerFile& file) {
  TiffDirectory directory;
  directory.SetAscii(tag::kMake, IsDng(file) ? "Testbench" : "SONY");
  directory.SetAscii(tag::kModel, IsDng(file) ? "Bayer 16" : "ILCE-7M3");
  directory.SetShorts(tag::kOrientation, {static_cast<uint16_t>(file.orientation)});
  SetSensor(directory, file);
  if (IsDng(file)) {
    SetDngLevels(directory, file);
  } else {
    SetArwLevels(directory, file);
  }
  return directory;
}

std::vector<uint8_t> MakeBayerFile(const BayerFile& file) {
  return MakeBayerDirectory(file).Serialize();
}

std::ostream& operator<<(std::ostream& out, const BayerFile& file) {
  constexpr const char* kFormats[] = {"compressed ARW", "uncompressed ARW", "DNG"};
  const BayerMargins& margins = file.margins;
  out << kFormats[static_cast<int>(file.format)] << ' ' << file.size << ", margins " << margins.top << ' '
      << margins.left << ' ' << margins.bottom << ' ' << margins.right << ", orientation " << file.orientation
      << ", black " << file.black_repeat << ", white " << file.white << ", content "
      << static_cast<int>(file.content) << ", seed " << file.seed;
  Print(out, "pattern", file.pattern);
  Print(out, "black", file.black);
  Print(out, "neutral", file.neutral);
  Print(out, "matrix", file.matrix);
  Print(out, "levels", std::vector<uint16_t>(file.arw_levels.begin(), file.arw_levels.end()));
  return out;
}

}  // namespace lumvik::test
