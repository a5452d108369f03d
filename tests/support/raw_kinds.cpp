#include "support/raw_kinds.h"

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include "support/file_bytes.h"
#include "support/lossless_jpeg.h"
#include "support/raw_previews.h"
#include "support/raw_writer.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr int kRows = 32;
constexpr int kColumns = 64;
constexpr uint16_t kLinearRaw = 34892;  // a photometric interpretation
constexpr uint16_t kLosslessJpeg = 7;   // compressions
constexpr uint16_t kLossyJpeg = 34892;

cv::Mat Noise(int type, int limit) {
  cv::Mat noise(kRows, kColumns, type);
  cv::RNG(7).fill(noise, cv::RNG::UNIFORM, 0, limit);
  return noise;
}

TiffDirectory Raw(RawFormat format, RawPreview preview) {
  RawOptions options;
  options.format = format;
  options.preview = preview;
  return MakeRawDirectory(Noise(CV_8UC3, 256), options);
}

// A DNG whose only directory is the sensor's.
TiffDirectory Dng(uint16_t bits, uint16_t compression, Bytes samples) {
  TiffDirectory dng = Raw(RawFormat::kDng, RawPreview::kNone);
  dng.SetShorts(tag::kBitsPerSample, {bits});
  dng.SetShorts(tag::kCompression, {compression});
  dng.SetData(tag::kStripOffsets, tag::kStripByteCounts, std::move(samples));
  return dng;
}

// Two tiles side by side, of which the second lies beyond the end of the file.
Bytes MissingTileDng(const cv::Mat& sensor) {
  constexpr int kTileColumns = kColumns / 2;
  const Bytes tile = EncodeLosslessJpeg(sensor.colRange(0, kTileColumns));
  TiffDirectory dng = Dng(14, kLosslessJpeg, tile);
  dng.SetLongs(tag::kTileWidth, {kTileColumns});
  dng.SetLongs(tag::kTileLength, {kRows});
  const auto with_tile_at = [&dng](size_t first, size_t end) {
    dng.SetLongs(tag::kTileOffsets, {static_cast<uint32_t>(first), static_cast<uint32_t>(end)});
    return dng.Serialize();
  };
  // The samples come last, so their position is known once the directory is.
  const size_t end = with_tile_at(0, 0).size();
  return with_tile_at(end - tile.size(), end);
}

Bytes LinearDng(uint16_t bits, uint16_t compression, Bytes samples) {
  TiffDirectory dng = Dng(bits, compression, std::move(samples));
  dng.SetShorts(tag::kBitsPerSample, {bits, bits, bits});
  dng.SetShorts(tag::kSamplesPerPixel, {3});
  dng.SetShorts(tag::kPhotometric, {kLinearRaw});
  return dng.Serialize();
}

Bytes LossyDng() {
  Bytes jpeg;
  cv::imencode(".jpg", Noise(CV_8UC3, 256), jpeg);
  return LinearDng(8, kLossyJpeg, std::move(jpeg));
}

// Sony's lossless codes of +1, -1 and 0, repeated.
Bytes Arw1Samples() {
  constexpr uint32_t kPattern = 0b111'110'011;
  constexpr size_t kPatternBits = 9;
  Bytes samples(size_t{kRows} * kColumns);
  for (size_t bit = 0; bit < 8 * samples.size(); ++bit) {
    const auto value = static_cast<uint8_t>(kPattern >> (kPatternBits - 1 - bit % kPatternBits) & 1);
    samples[bit / 8] = static_cast<uint8_t>(samples[bit / 8] << 1 | value);
  }
  samples.pop_back();
  return samples;
}

// LibRaw tells Sony's compressions apart by the size of their samples.
Bytes Arw(Bytes samples) {
  TiffDirectory arw;
  arw.SetAscii(tag::kMake, "SONY");
  arw.SetAscii(tag::kModel, "ILCE-7M3");
  arw.SetLongs(tag::kImageWidth, {kColumns});
  arw.SetLongs(tag::kImageLength, {kRows});
  arw.SetShorts(tag::kBitsPerSample, {12});
  arw.SetShorts(tag::kCompression, {kSonyCompressed});
  arw.SetShorts(tag::kSamplesPerPixel, {1});
  arw.SetData(tag::kStripOffsets, tag::kStripByteCounts, std::move(samples));
  return arw.Serialize();
}

// LibRaw takes a preview of compression 0 for one of separate color planes.
Bytes PlanarPreviewDng() {
  TiffDirectory dng = Raw(RawFormat::kDng, RawPreview::kBitmap);
  dng.SetShorts(tag::kCompression, {0});
  return dng.Serialize();
}

}  // namespace

std::vector<RawKind> RawKinds() {
  const cv::Mat deep = Noise(CV_16UC1, 1 << 14);
  const auto made = [](RawFormat format, RawPreview preview) { return Raw(format, preview).Serialize(); };
  return {
      {"arw_compressed", "sony_arw2_load_raw()", made(RawFormat::kArwCompressed, RawPreview::kJpeg)},
      {"arw_uncompressed", "unpacked_load_raw()", made(RawFormat::kArwUncompressed, RawPreview::kJpeg)},
      {"arw_compressed_flat_no_preview", "sony_arw2_load_raw()", Arw(Bytes(size_t{kRows} * kColumns))},
      {"arw_lossless_no_preview", "sony_arw_load_raw()", Arw(Arw1Samples())},
      {"dng_jpeg_preview", "packed_dng_load_raw()", made(RawFormat::kDng, RawPreview::kJpeg)},
      {"dng_bitmap_preview", "packed_dng_load_raw()", made(RawFormat::kDng, RawPreview::kBitmap)},
      {"dng_preview_missing_a_strip", "packed_dng_load_raw()", MakeMissingStripRaw(Noise(CV_8UC3, 256))},
      {"dng_planar_preview", "packed_dng_load_raw()", PlanarPreviewDng()},
      {"dng_packed_no_preview", "packed_dng_load_raw()", Dng(12, 1, BytesOf(deep)).Serialize()},
      {"dng_lossless_no_preview", "lossless_dng_load_raw()",
       Dng(14, kLosslessJpeg, EncodeLosslessJpeg(deep)).Serialize()},
      {"dng_lossless_missing_tile_no_preview", "lossless_dng_load_raw()", MissingTileDng(deep)},
      {"dng_linear_no_preview", "packed_dng_load_raw()", LinearDng(16, 1, BytesOf(Noise(CV_16UC3, 1 << 16)))},
      {"dng_lossy_no_preview", "lossy_dng_load_raw()", LossyDng()},
  };
}

}  // namespace lumvik::test
