#include "color/srgb_conversion.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <new>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "base/byte_matrix.h"
#include "base/failure.h"
#include "color/color_profile.h"
#include "color/embedded_profile.h"
#include "files/file_reading.h"

namespace lumvik::host {
namespace {

constexpr std::uintmax_t kMaxImageBytes = std::numeric_limits<std::int32_t>::max();

// Upright, blue first; empty if it cannot be decoded.
cv::Mat DecodeWithAllBits(const std::string& image) {
  try {
    return cv::imdecode(ByteMatrix(image), cv::IMREAD_COLOR | cv::IMREAD_ANYDEPTH);
  } catch (const cv::Exception& error) {
    if (error.code == cv::Error::StsNoMem) throw std::bad_alloc();
    return {};
  }
}

// One channel of an image whose three are equal; empty for any other.
cv::Mat GrayOf(const cv::Mat& image) {
  std::vector<cv::Mat> planes;
  cv::split(image, planes);
  if (cv::norm(planes[0], planes[1], cv::NORM_INF) > 0) return {};
  if (cv::norm(planes[0], planes[2], cv::NORM_INF) > 0) return {};
  return planes[0];
}

// The pixels that the profile is meant for; empty if there are none.
cv::Mat PixelsFor(const ColorProfile& profile, const cv::Mat& image) {
  if (image.type() != CV_8UC3 && image.type() != CV_16UC3) return {};
  return profile.IsGray() ? GrayOf(image) : image;
}

ColorProfile ProfileOf(const std::string& image, lumvik_host_format format) {
  const std::string icc = FindIccProfile(image, format);
  if (icc.empty() && format == LUMVIK_HOST_FORMAT_JPEG && StatesAdobeRgb(image)) {
    return ColorProfile::AdobeRgb();
  }
  return ColorProfile(icc);
}

}  // namespace

SrgbConversion ConvertToSrgb(const std::string& path, lumvik_host_format format) {
  const std::string image = ReadFile(path, kMaxImageBytes);
  const ColorProfile profile = ProfileOf(image, format);
  if (!profile.IsUsable()) return {};
  SrgbConversion conversion;
  conversion.profile = profile.Description();
  // OpenCV has already converted CMYK images.
  if (!(profile.IsRgb() || profile.IsGray()) || profile.IsLikeSrgb()) return conversion;
  const cv::Mat pixels = PixelsFor(profile, DecodeWithAllBits(image));
  if (pixels.empty()) return conversion;
  std::vector<std::uint8_t> bmp;
  if (!cv::imencode(kConvertedExtension, profile.ConvertToSrgb(pixels), bmp)) throw std::bad_alloc();
  conversion.converted.assign(bmp.begin(), bmp.end());
  return conversion;
}

}  // namespace lumvik::host
