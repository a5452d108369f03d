#include "image/image_loader.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string_view>

#include "base/file_io.h"

namespace lumvik {
namespace {

constexpr std::array<std::string_view, 7> kStandardExtensions = {".jpg",  ".jpeg", ".png", ".tif",
                                                                 ".tiff", ".bmp",  ".webp"};
constexpr int kMaxLongSide = 4096;

}  // namespace

bool IsStandardImagePath(const std::string& path) {
  std::string lowered = path;
  std::transform(lowered.begin(), lowered.end(), lowered.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  const auto ends_with = [&lowered](std::string_view extension) {
    return lowered.size() >= extension.size() &&
           lowered.compare(lowered.size() - extension.size(), extension.size(), extension) == 0;
  };
  return std::any_of(kStandardExtensions.begin(), kStandardExtensions.end(), ends_with);
}

cv::Mat DecodeImage(const std::vector<uint8_t>& bytes, int flag) {
  if (bytes.empty()) return {};  // cv::imdecode throws on an empty buffer
  try {
    return cv::imdecode(bytes, flag);
  } catch (const cv::Exception& error) {
    // The decoder throws for some headers, such as sizes beyond its limits: the file cannot be decoded.
    if (error.code == cv::Error::StsNoMem) throw;
    return {};
  }
}

cv::Mat ReadImageFileUtf8(const std::string& path, int flag) {
  return DecodeImage(ReadWholeFile(path), flag);
}

ImageBuffer LoadStandardImage(const std::string& path) {
  cv::Mat image = ReadImageFileUtf8(path, cv::IMREAD_COLOR);
  if (image.empty()) return {};
  const int long_side = std::max(image.cols, image.rows);
  if (long_side > kMaxLongSide) {
    ShrinkImage(image, static_cast<float>(kMaxLongSide) / static_cast<float>(long_side));
  }
  // After shrinking: an in-place cvtColor works on a copy.
  cv::cvtColor(image, image, cv::COLOR_BGR2RGB);
  return ToImageBuffer(image);
}

}  // namespace lumvik
