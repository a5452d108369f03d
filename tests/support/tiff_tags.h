// The TIFF, EXIF, DNG and Sony tags in our RAW files.
#ifndef LUMVIK_TESTS_SUPPORT_TIFF_TAGS_H_
#define LUMVIK_TESTS_SUPPORT_TIFF_TAGS_H_

#include <cstdint>

namespace lumvik::test {

// A value of the compression tag.
inline constexpr uint16_t kSonyCompressed = 32767;

// A value of the tags of a calibration illuminant.
inline constexpr uint16_t kIlluminantD65 = 21;

}  // namespace lumvik::test

namespace lumvik::test::tag {

inline constexpr uint16_t kNewSubfileType = 0x00fe;
inline constexpr uint16_t kImageWidth = 0x0100;
inline constexpr uint16_t kImageLength = 0x0101;
inline constexpr uint16_t kBitsPerSample = 0x0102;
inline constexpr uint16_t kCompression = 0x0103;
inline constexpr uint16_t kPhotometric = 0x0106;
inline constexpr uint16_t kMake = 0x010f;
inline constexpr uint16_t kModel = 0x0110;
inline constexpr uint16_t kStripOffsets = 0x0111;
inline constexpr uint16_t kOrientation = 0x0112;
inline constexpr uint16_t kSamplesPerPixel = 0x0115;
inline constexpr uint16_t kRowsPerStrip = 0x0116;
inline constexpr uint16_t kStripByteCounts = 0x0117;
inline constexpr uint16_t kPlanarConfiguration = 0x011c;
inline constexpr uint16_t kDateTime = 0x0132;
inline constexpr uint16_t kTileWidth = 0x0142;
inline constexpr uint16_t kTileLength = 0x0143;
inline constexpr uint16_t kTileOffsets = 0x0144;
inline constexpr uint16_t kTileByteCounts = 0x0145;
inline constexpr uint16_t kSubIfds = 0x014a;
inline constexpr uint16_t kJpegOffset = 0x0201;
inline constexpr uint16_t kJpegLength = 0x0202;

inline constexpr uint16_t kExposureTime = 0x829a;
inline constexpr uint16_t kFNumber = 0x829d;
inline constexpr uint16_t kExifIfd = 0x8769;
inline constexpr uint16_t kIsoSpeed = 0x8827;
inline constexpr uint16_t kDateTimeOriginal = 0x9003;
inline constexpr uint16_t kFocalLength = 0x920a;

inline constexpr uint16_t kCfaRepeatPatternDim = 0x828d;
inline constexpr uint16_t kCfaPattern = 0x828e;
inline constexpr uint16_t kDngVersion = 0xc612;
inline constexpr uint16_t kUniqueCameraModel = 0xc614;
inline constexpr uint16_t kCfaPlaneColor = 0xc616;
inline constexpr uint16_t kCfaLayout = 0xc617;
inline constexpr uint16_t kBlackLevelRepeatDim = 0xc619;
inline constexpr uint16_t kBlackLevel = 0xc61a;
inline constexpr uint16_t kWhiteLevel = 0xc61d;
inline constexpr uint16_t kDefaultScale = 0xc61e;
inline constexpr uint16_t kColorMatrix1 = 0xc621;
inline constexpr uint16_t kAsShotNeutral = 0xc628;
inline constexpr uint16_t kCalibrationIlluminant1 = 0xc65a;
inline constexpr uint16_t kActiveArea = 0xc68d;

inline constexpr uint16_t kSonyToneCurve = 0x7010;
inline constexpr uint16_t kSonyBlackLevel = 0x7310;
inline constexpr uint16_t kSonyRggbLevels = 0x7313;

}  // namespace lumvik::test::tag

#endif  // LUMVIK_TESTS_SUPPORT_TIFF_TAGS_H_
