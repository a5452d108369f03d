#include "support/broken_raw.h"

#include <cstddef>

#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

constexpr uint16_t kDeflate = 8;
constexpr uint16_t kDiagonalLayout = 2;
constexpr int kMinSide = 22;  // LibRaw opens nothing smaller
constexpr size_t kMissingBytes = 500;

cv::Mat Picture(int rows = 40, int columns = 64) {
  return {rows, columns, CV_8UC3, cv::Scalar(90, 150, 210)};
}

TiffDirectory Dng(const cv::Mat& picture = Picture()) {
  RawOptions options;
  options.format = RawFormat::kDng;
  options.preview = RawPreview::kNone;
  return MakeRawDirectory(picture, options);
}

}  // namespace

std::vector<uint8_t> MakeUnsupportedFile() {
  return std::vector<uint8_t>(1000, 'Z');
}

std::vector<uint8_t> MakeTruncatedRaw(RawFormat format) {
  RawOptions options;
  options.format = format;
  std::vector<uint8_t> bytes = MakeRawFile(Picture(), options);
  bytes.resize(bytes.size() - kMissingBytes);  // the samples come last
  return bytes;
}

std::vector<uint8_t> MakeOversizedRaw(uint32_t side) {
  TiffDirectory dng = Dng();
  dng.SetLongs(tag::kImageWidth, {side});
  dng.SetLongs(tag::kImageLength, {side});
  return dng.Serialize();
}

std::vector<uint8_t> MakeUndecodableRaw() {
  TiffDirectory dng = Dng();
  dng.SetShorts(tag::kCompression, {kDeflate});
  return dng.Serialize();
}

std::vector<uint8_t> MakeUndevelopableRaw() {
  TiffDirectory dng = Dng();
  dng.SetShorts(tag::kCfaRepeatPatternDim, {6, 6});
  dng.SetBytes(tag::kCfaPattern, {1, 0, 1, 1, 2, 1,  //
                                  2, 1, 2, 0, 1, 0,  //
                                  1, 0, 1, 1, 2, 1,  //
                                  1, 2, 1, 1, 0, 1,  //
                                  0, 1, 0, 2, 1, 2,  //
                                  1, 2, 1, 1, 0, 1});
  return dng.Serialize();
}

std::vector<uint8_t> MakeTwoColorRaw() {
  TiffDirectory dng = Dng();
  dng.SetBytes(tag::kCfaPattern, {0, 1, 1, 0});
  dng.SetBytes(tag::kCfaPlaneColor, {0, 1});
  return dng.Serialize();
}

std::vector<uint8_t> MakeDamagedPreviewRaw() {
  RawOptions options;
  options.format = RawFormat::kDng;
  options.preview_jpeg = {0xff, 0xd8, 0xff, 0xd9};  // start and end
  options.preview_jpeg.resize(1000);                // LibRaw wants at least 64 bytes
  return MakeRawFile(Picture(), options);
}

std::vector<uint8_t> MakeDiagonalRaw(int rows) {
  TiffDirectory dng = Dng(Picture(rows, kMinSide));
  dng.SetShorts(tag::kCfaLayout, {kDiagonalLayout});
  return dng.Serialize();
}

}  // namespace lumvik::test
