#include "color/stated_profile.h"

#include <utility>

#include "color/embedded_profile.h"
#include "files/file_reading.h"

namespace lumvik::host {

StatedProfile ProfileStatedBy(const std::string& image, lumvik_host_format format) {
  StatedProfile stated;
  const bool has_profile = HasIccProfile(image, format);
  if (!has_profile && format == LUMVIK_HOST_FORMAT_JPEG && StatesAdobeRgb(image)) {
    stated.profile = ColorProfile::AdobeRgb();
    stated.icc = stated.profile->Serialize();
    stated.description = stated.profile->Description();
    return stated;
  }
  std::string icc = FindIccProfile(image, format);
  ColorProfile profile(icc);
  if (!profile.IsUsable()) {
    if (has_profile) stated.warning = "it is damaged, so the colors are taken as sRGB";
    return stated;
  }
  stated.description = profile.Description();
  if (!profile.IsRgb() && !profile.IsGray()) {
    // OpenCV has already converted CMYK images, whose profiles are the most common of these.
    stated.warning = "it is neither for RGB nor for gray images, so the colors are approximate";
    return stated;
  }
  stated.profile = std::move(profile);
  stated.icc = std::move(icc);
  return stated;
}

const PixelColors& SrgbColors() {
  static const PixelColors kSrgb = {ColorProfile::Srgb().Serialize()};
  return kSrgb;
}

KeptColors ColorsOf(const std::string& path, lumvik_host_format format) {
  StatedProfile stated = ProfileStatedBy(ReadFile(path, kMaxImageBytes), format);
  KeptColors kept = {SrgbColors(), std::move(stated.description), std::move(stated.warning)};
  if (!stated.profile) return kept;
  if (stated.profile->IsRgb()) {
    kept.colors = {std::move(stated.icc), stated.profile->IsLikeSrgb()};
  } else {
    kept.warning = "it is for gray images, so the colors are taken as sRGB";
  }
  return kept;
}

}  // namespace lumvik::host
