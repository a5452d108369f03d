#include "color/srgb_conversion.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <opencv2/imgcodecs.hpp>
#include <vector>

#include "base/byte_matrix.h"
#include "base/failure.h"
#include "color/color_profile.h"
#include "color/stated_profile.h"
#include "files/file_reading.h"

namespace lumvik::host {
namespace {

// Upright, blue first; empty if it cannot be decoded.
cv::Mat Decode(const std::string& image, int flags) {
  try {
    return cv::imdecode(ByteMatrix(image), flags);
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

struct ConvertedPixels {
  std::string profile;
  cv::Mat pixels;  // CV_8UC3 in sRGB; empty if there is nothing to convert
  std::string warning;
};

ConvertedPixels Convert(const std::string& image, lumvik_host_format format) {
  const StatedProfile stated = ProfileStatedBy(image, format);
  ConvertedPixels result;
  result.profile = stated.description;
  result.warning = stated.warning;
  if (!stated.profile || stated.profile->IsLikeSrgb()) return result;
  const cv::Mat decoded = Decode(image, cv::IMREAD_COLOR | cv::IMREAD_ANYDEPTH);
  if (decoded.empty()) return result;  // opening it states the reason
  const cv::Mat pixels = PixelsFor(*stated.profile, decoded);
  if (pixels.empty()) {
    result.warning = "it does not fit the image, so the colors are taken as sRGB";
    return result;
  }
  result.pixels = stated.profile->ConvertToSrgb(pixels);
  return result;
}

}  // namespace

SrgbConversion ConvertToSrgb(const std::string& path, lumvik_host_format format) {
  const ConvertedPixels result = Convert(ReadFile(path, kMaxImageBytes), format);
  SrgbConversion conversion;
  conversion.profile = result.profile;
  conversion.warning = result.warning;
  if (result.pixels.empty()) return conversion;
  std::vector<std::uint8_t> bmp;
  if (!cv::imencode(kConvertedExtension, result.pixels, bmp)) throw std::bad_alloc();
  conversion.converted.assign(bmp.begin(), bmp.end());
  return conversion;
}

cv::Mat DecodeToSrgb(const std::string& image, lumvik_host_format format) {
  const cv::Mat converted = Convert(image, format).pixels;
  return converted.empty() ? Decode(image, cv::IMREAD_COLOR) : converted;
}

bool StatesOtherColors(const std::string& image, lumvik_host_format format) {
  const StatedProfile stated = ProfileStatedBy(image, format);
  if (stated.profile) return !stated.profile->IsLikeSrgb();
  return !stated.description.empty();
}

}  // namespace lumvik::host
