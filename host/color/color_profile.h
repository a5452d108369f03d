// ICC profiles and conversions to sRGB.
#ifndef LUMVIK_HOST_COLOR_COLOR_PROFILE_H_
#define LUMVIK_HOST_COLOR_COLOR_PROFILE_H_

#include <memory>
#include <opencv2/core.hpp>
#include <string>
#include <string_view>

namespace lumvik::host {

class ColorProfile {
 public:
  // From the bytes of an ICC profile. Unusable ones make an empty object.
  explicit ColorProfile(std::string_view icc);
  static ColorProfile Srgb();
  static ColorProfile AdobeRgb();

  bool IsUsable() const { return profile_ != nullptr; }
  void* Handle() const { return profile_.get(); }  // a cmsHPROFILE
  std::string Description() const;

  // Whether images of one channel or of three can be converted.
  bool IsGray() const;
  bool IsRgb() const;

  // Whether conversion changes no color visibly. Judges by the effect: many profiles of other names are sRGB.
  bool IsLikeSrgb() const;

  // The pixels in sRGB, CV_8UC3 of blue, green and red. `image`: CV_8UC3 or CV_16UC3 in the same order; for a
  // gray profile CV_8UC1 or CV_16UC1.
  cv::Mat ConvertToSrgb(const cv::Mat& image) const;

  // The same bytes at any time and on any system.
  std::string Serialize() const;

 private:
  explicit ColorProfile(void* profile);

  std::shared_ptr<void> profile_;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_COLOR_COLOR_PROFILE_H_
