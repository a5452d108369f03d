#include "support/raw_writer.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <stdexcept>
#include <utility>

#include "support/file_bytes.h"
#include "support/sensor_mosaic.h"
#include "support/sony_arw2.h"
#include "support/tiff_tags.h"

namespace lumvik::test {
namespace {

constexpr char kArwMake[] = "SONY", kArwModel[] = "ILCE-7M3";
constexpr char kDngMake[] = "Testbench", kDngModel[] = "Bayer 14";

// The model's matrix for D65, from LibRaw's table.
const cv::Matx33d kArwModelFromXyz(0.7374, -0.2389, -0.0551,  //
                                   -0.5435, 1.3162, 0.2519,   //
                                   -0.1006, 0.1795, 0.6552);

constexpr int kPreviewLongSide = 160;
constexpr int kPreviewQuality = 90;

constexpr uint16_t kPhotometricRgb = 2, kPhotometricYcbcr = 6, kPhotometricCfa = 32803,
                   kPhotometricLinearRaw = 34892;
constexpr uint16_t kUncompressed = 1, kOldJpeg = 6, kJpeg = 7;

bool IsDng(const RawOptions& options) {
  return options.format == RawFormat::kDng;
}

std::string Make(const RawOptions& options) {
  return !options.make.empty() ? options.make : IsDng(options) ? kDngMake : kArwMake;
}

std::string Model(const RawOptions& options) {
  return !options.model.empty() ? options.model : IsDng(options) ? kDngModel : kArwModel;
}

void Demand(bool condition, const char* what) {
  if (!condition) throw std::invalid_argument(what);
}

void Check(const cv::Mat& rgb, const RawOptions& options) {
  Demand(!rgb.empty() && (rgb.type() == CV_8UC3 || rgb.type() == CV_16UC3),
         "picture must be 8 or 16 bit RGB");
  Demand(!options.monochrome || IsDng(options), "only a DNG can be monochrome");
  Demand(options.preview != RawPreview::kBitmap || IsDng(options), "only a DNG can have a bitmap preview");
}

uint32_t Unsigned(int value) {
  return static_cast<uint32_t>(value);
}

cv::Mat PreviewPicture(const cv::Mat& rgb, const RawOptions& options) {
  cv::Mat picture = options.preview_picture;
  if (picture.empty()) {
    const double scale = std::min(1.0, double{kPreviewLongSide} / std::max(rgb.rows, rgb.cols));
    const cv::Size size(std::max(1, cvRound(rgb.cols * scale)), std::max(1, cvRound(rgb.rows * scale)));
    cv::resize(rgb, picture, size, 0, 0, cv::INTER_AREA);
  }
  cv::Mat bytes;
  picture.convertTo(bytes, CV_8U, picture.depth() == CV_16U ? 1.0 / 257 : 1.0);
  return bytes;
}

std::vector<uint8_t> PreviewJpeg(const cv::Mat& rgb, const RawOptions& options) {
  if (!options.preview_jpeg.empty()) return options.preview_jpeg;
  cv::Mat bgr;
  cv::cvtColor(PreviewPicture(rgb, options), bgr, cv::COLOR_RGB2BGR);
  std::vector<uint8_t> jpeg;
  cv::imencode(".jpg", bgr, jpeg, {cv::IMWRITE_JPEG_QUALITY, kPreviewQuality});
  return jpeg;
}

void SetImage(TiffDirectory& directory, cv::Size size, int samples, uint16_t bits, uint16_t photometric,
              uint16_t compression, std::vector<uint8_t> data) {
  directory.SetLongs(tag::kImageWidth, {Unsigned(size.width)});
  directory.SetLongs(tag::kImageLength, {Unsigned(size.height)});
  directory.SetShorts(tag::kBitsPerSample, std::vector<uint16_t>(static_cast<size_t>(samples), bits));
  directory.SetShorts(tag::kCompression, {compression});
  directory.SetShorts(tag::kPhotometric, {photometric});
  directory.SetShorts(tag::kSamplesPerPixel, {static_cast<uint16_t>(samples)});
  directory.SetLongs(tag::kRowsPerStrip, {Unsigned(size.height)});
  directory.SetShorts(tag::kPlanarConfiguration, {1});
  directory.SetData(tag::kStripOffsets, tag::kStripByteCounts, std::move(data));
}

void SetBayerPattern(TiffDirectory& directory) {
  directory.SetShorts(tag::kCfaRepeatPatternDim, {2, 2});
  directory.SetBytes(tag::kCfaPattern, {0, 1, 1, 2});
}

void SetShootingData(TiffDirectory& first, const RawOptions& options) {
  first.SetAscii(tag::kMake, Make(options));
  first.SetAscii(tag::kModel, Model(options));
  first.SetShorts(tag::kOrientation, {static_cast<uint16_t>(options.orientation)});
  first.SetAscii(tag::kDateTime, options.datetime);
  TiffDirectory exif;
  exif.SetRationals(tag::kExposureTime, {options.exposure_time});
  exif.SetRationals(tag::kFNumber, {options.f_number});
  exif.SetShorts(tag::kIsoSpeed, {options.iso});
  exif.SetAscii(tag::kDateTimeOriginal, options.datetime);
  exif.SetRationals(tag::kFocalLength, {options.focal_length});
  first.SetDirectory(tag::kExifIfd, std::move(exif));
}

// LibRaw crops a camera-specific margin from sensors of these widths (first and last of each range).
constexpr int kCroppedArwWidths[][2] = {{2816, 2816}, {3751, 4119}, {4288, 4288}, {4580, 5019},
                                        {5216, 5216}, {5504, 5504}, {6048, 6048}, {6304, 6304},
                                        {7392, 7392}, {8000, 8000}, {9600, 9600}};

int ArwSensorColumns(int picture_columns) {
  int columns = static_cast<int>(cv::alignSize(static_cast<size_t>(picture_columns), kArw2GroupColumns));
  for (const auto& [first, last] : kCroppedArwWidths) {
    while (columns >= first && columns <= last) columns += kArw2GroupColumns;
  }
  return columns;
}

// A sensor of whole compression groups with the image as its active area.
TiffDirectory ArwSensorDirectory(const cv::Mat& rgb, const RawOptions& options) {
  const bool known_model = Make(options) == kArwMake && Model(options) == kArwModel;
  const cv::Matx33d camera = CameraFromSrgb(known_model ? kArwModelFromXyz : SrgbFromXyz());
  cv::Mat sensor = MosaicRggb(rgb, camera, options.multipliers);
  // Reflected, which preserves the color pattern.
  cv::copyMakeBorder(sensor, sensor, 0, 0, 0, ArwSensorColumns(rgb.cols) - rgb.cols, cv::BORDER_REFLECT_101);

  const bool compressed = options.format == RawFormat::kArwCompressed;
  TiffDirectory directory;
  directory.SetLongs(tag::kNewSubfileType, {0});
  SetImage(directory, sensor.size(), 1, 14, kPhotometricCfa, compressed ? kSonyCompressed : kUncompressed,
           compressed ? EncodeArw2(sensor) : BytesOf(sensor));
  SetBayerPattern(directory);
  directory.SetLongs(tag::kActiveArea, {0, 0, Unsigned(rgb.rows), Unsigned(rgb.cols)});
  directory.SetShorts(tag::kSonyToneCurve, {kArw2CurveKnees.begin(), kArw2CurveKnees.end()});
  directory.SetShorts(tag::kSonyBlackLevel, std::vector<uint16_t>(4, kSensorBlack));
  const auto level = [&](size_t c) {
    return static_cast<uint16_t>(std::lrint(1024 * options.multipliers[c]));
  };
  directory.SetShorts(tag::kSonyRggbLevels, {level(0), level(1), level(1), level(2)});
  return directory;
}

TiffDirectory MakeArw(const cv::Mat& rgb, const RawOptions& options) {
  TiffDirectory first;
  first.SetLongs(tag::kNewSubfileType, {1});
  if (options.preview == RawPreview::kJpeg) {
    first.SetShorts(tag::kCompression, {kOldJpeg});
    first.SetData(tag::kJpegOffset, tag::kJpegLength, PreviewJpeg(rgb, options));
  }
  SetShootingData(first, options);
  first.SetDirectory(tag::kSubIfds, ArwSensorDirectory(rgb, options));
  return first;
}

void SetDngSensor(TiffDirectory& directory, const cv::Mat& rgb, const RawOptions& options) {
  const cv::Mat sensor = options.monochrome
                             ? RecordLuminance(rgb)
                             : MosaicRggb(rgb, CameraFromSrgb(SrgbFromXyz()), options.multipliers);
  directory.SetLongs(tag::kNewSubfileType, {0});
  SetImage(directory, sensor.size(), 1, 16, options.monochrome ? kPhotometricLinearRaw : kPhotometricCfa,
           kUncompressed, BytesOf(sensor));
  if (!options.monochrome) {
    SetBayerPattern(directory);
    directory.SetBytes(tag::kCfaPlaneColor, {0, 1, 2});
    directory.SetShorts(tag::kCfaLayout, {1});
  }
  directory.SetShorts(tag::kBlackLevel, {kSensorBlack});
  directory.SetShorts(tag::kWhiteLevel, {kSensorWhite});
}

void SetDngColors(TiffDirectory& first, const RawOptions& options) {
  const cv::Matx33d camera_from_xyz = SrgbFromXyz();
  first.SetReals(tag::kColorMatrix1, {camera_from_xyz.val, camera_from_xyz.val + 9});
  first.SetShorts(tag::kCalibrationIlluminant1, {kIlluminantD65});
  constexpr uint32_t kUnit = 10'000'000;
  std::vector<Rational> neutral;
  for (const float multiplier : options.multipliers) {
    neutral.push_back({static_cast<uint32_t>(std::lrint(kUnit / multiplier)), kUnit});
  }
  first.SetRationals(tag::kAsShotNeutral, neutral);
}

void SetDngPreview(TiffDirectory& first, const cv::Mat& rgb, const RawOptions& options) {
  first.SetLongs(tag::kNewSubfileType, {1});
  if (options.preview == RawPreview::kJpeg) {
    std::vector<uint8_t> jpeg = PreviewJpeg(rgb, options);
    cv::Mat picture = cv::imdecode(jpeg, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
    if (picture.empty()) picture = PreviewPicture(rgb, options);  // not a JPEG; any size will do
    SetImage(first, picture.size(), 3, 8, kPhotometricYcbcr, kJpeg, std::move(jpeg));
  } else {
    const cv::Mat picture = PreviewPicture(rgb, options);
    SetImage(first, picture.size(), 3, 8, kPhotometricRgb, kUncompressed, BytesOf(picture));
  }
}

TiffDirectory MakeDng(const cv::Mat& rgb, const RawOptions& options) {
  TiffDirectory first;
  SetShootingData(first, options);
  first.SetBytes(tag::kDngVersion, {1, 4, 0, 0});
  first.SetAscii(tag::kUniqueCameraModel, Make(options) + " " + Model(options));
  if (!options.monochrome) SetDngColors(first, options);
  if (options.preview == RawPreview::kNone) {
    SetDngSensor(first, rgb, options);
  } else {
    SetDngPreview(first, rgb, options);
    TiffDirectory sensor;
    SetDngSensor(sensor, rgb, options);
    first.SetDirectory(tag::kSubIfds, std::move(sensor));
  }
  return first;
}

}  // namespace

TiffDirectory MakeRawDirectory(const cv::Mat& rgb, const RawOptions& options) {
  Check(rgb, options);
  return IsDng(options) ? MakeDng(rgb, options) : MakeArw(rgb, options);
}

std::vector<uint8_t> MakeRawFile(const cv::Mat& rgb, const RawOptions& options) {
  return MakeRawDirectory(rgb, options).Serialize();
}

}  // namespace lumvik::test
