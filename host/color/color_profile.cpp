#include "color/color_profile.h"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <vector>

namespace lumvik::host {
namespace {

constexpr cmsCIExyY kD65 = {0.3127, 0.3290, 1.0};

std::shared_ptr<void> TransformOf(cmsHPROFILE profile, cmsUInt32Number from, cmsUInt32Number to) {
  const ColorProfile srgb = ColorProfile::Srgb();
  // Without the cache of the latest pixel, threads share nothing.
  cmsUInt32Number flags = cmsFLAGS_BLACKPOINTCOMPENSATION | cmsFLAGS_NOCACHE;
  // Except for 8-bit RGB, Little CMS 2.14 interpolates in a coarse grid, with errors of several levels.
  if (from != TYPE_BGR_8) flags |= cmsFLAGS_NOOPTIMIZE;
  return {cmsCreateTransform(profile, from, srgb.Handle(), to, INTENT_RELATIVE_COLORIMETRIC, flags),
          [](cmsHTRANSFORM transform) {
            if (transform != nullptr) cmsDeleteTransform(transform);
          }};
}

void SetDescription(cmsHPROFILE profile, const char* text) {
  const std::unique_ptr<cmsMLU, decltype(&cmsMLUfree)> description(cmsMLUalloc(nullptr, 1), cmsMLUfree);
  if (!description) throw std::bad_alloc();
  cmsMLUsetASCII(description.get(), "en", "US", text);
  cmsWriteTag(profile, cmsSigProfileDescriptionTag, description.get());
}

// Every color of a few levels per channel, 16 bits per sample.
std::vector<std::uint16_t> SampleColors(unsigned channels) {
  constexpr unsigned kLevels = 9;
  std::vector<std::uint16_t> samples;
  const unsigned count = channels == 1 ? kLevels : kLevels * kLevels * kLevels;
  for (unsigned color = 0; color < count; ++color) {
    for (unsigned channel = 0, rest = color; channel < channels; ++channel, rest /= kLevels) {
      samples.push_back(static_cast<std::uint16_t>(rest % kLevels * UINT16_MAX / (kLevels - 1)));
    }
  }
  return samples;
}

}  // namespace

ColorProfile::ColorProfile(void* profile)
    : profile_(profile, [](cmsHPROFILE opened) {
        if (opened != nullptr) cmsCloseProfile(opened);
      }) {}

ColorProfile::ColorProfile(std::string_view icc)
    : ColorProfile(cmsOpenProfileFromMem(icc.data(), static_cast<cmsUInt32Number>(icc.size()))) {
  if (!IsUsable()) return;
  const bool is_transformable =
      TransformOf(profile_.get(), IsGray() ? TYPE_GRAY_16 : TYPE_RGB_16, TYPE_RGB_16) != nullptr;
  if ((IsGray() || IsRgb()) && !is_transformable) profile_.reset();
}

ColorProfile ColorProfile::Srgb() {
  ColorProfile srgb(cmsCreate_sRGBProfile());
  if (!srgb.IsUsable()) throw std::bad_alloc();
  SetDescription(srgb.Handle(), "sRGB");
  return srgb;
}

ColorProfile ColorProfile::AdobeRgb() {
  // Adobe RGB (1998) Color Image Encoding, 2005, section 4.3.
  constexpr double kGamma = 563.0 / 256.0;
  constexpr cmsCIExyYTRIPLE kPrimaries = {{0.64, 0.33, 1.0}, {0.21, 0.71, 1.0}, {0.15, 0.06, 1.0}};
  const std::unique_ptr<cmsToneCurve, decltype(&cmsFreeToneCurve)> curve(cmsBuildGamma(nullptr, kGamma),
                                                                         cmsFreeToneCurve);
  if (!curve) throw std::bad_alloc();
  const std::array<cmsToneCurve*, 3> curves = {curve.get(), curve.get(), curve.get()};
  ColorProfile profile(cmsCreateRGBProfile(&kD65, &kPrimaries, curves.data()));
  if (!profile.IsUsable()) throw std::bad_alloc();
  SetDescription(profile.Handle(), "Adobe RGB (1998)");
  return profile;
}

std::string ColorProfile::Description() const {
  std::array<char, 256> text{};
  cmsGetProfileInfoASCII(Handle(), cmsInfoDescription, "en", "US", text.data(), text.size());
  text.back() = '\0';
  return text.data();
}

bool ColorProfile::IsGray() const {
  return cmsGetColorSpace(Handle()) == cmsSigGrayData;
}

bool ColorProfile::IsRgb() const {
  return cmsGetColorSpace(Handle()) == cmsSigRgbData;
}

bool ColorProfile::IsLikeSrgb() const {
  constexpr int kInvisible = 2 * 257;  // two levels of 255
  const unsigned channels = IsGray() ? 1 : 3;
  const std::vector<std::uint16_t> colors = SampleColors(channels);
  std::vector<std::uint16_t> converted(colors.size() / channels * 3);
  const auto transform = TransformOf(Handle(), IsGray() ? TYPE_GRAY_16 : TYPE_RGB_16, TYPE_RGB_16);
  if (transform == nullptr) throw std::bad_alloc();
  cmsDoTransform(transform.get(), colors.data(), converted.data(),
                 static_cast<cmsUInt32Number>(colors.size() / channels));
  for (std::size_t i = 0; i < converted.size(); ++i) {
    const int before = colors[IsGray() ? i / 3 : i];
    if (std::abs(converted[i] - before) > kInvisible) return false;
  }
  return true;
}

cv::Mat ColorProfile::ConvertToSrgb(const cv::Mat& image) const {
  const bool is_deep = image.depth() == CV_16U;
  const cmsUInt32Number from =
      IsGray() ? (is_deep ? TYPE_GRAY_16 : TYPE_GRAY_8) : (is_deep ? TYPE_BGR_16 : TYPE_BGR_8);
  const auto transform = TransformOf(Handle(), from, TYPE_BGR_8);
  if (transform == nullptr) throw std::bad_alloc();
  cv::Mat converted(image.size(), CV_8UC3);
  cv::parallel_for_(cv::Range(0, image.rows), [&](const cv::Range& rows) {
    for (int row = rows.start; row < rows.end; ++row) {
      cmsDoTransform(transform.get(), image.ptr(row), converted.ptr(row),
                     static_cast<cmsUInt32Number>(image.cols));
    }
  });
  return converted;
}

std::string ColorProfile::Serialize() const {
  constexpr std::size_t kDateOffset = 24;
  constexpr std::size_t kPlatformOffset = 40;
  // 2000-01-01 00:00:00, as six numbers of two bytes.
  constexpr std::array<char, 12> kDate = {0x07, static_cast<char>(0xD0), 0, 1, 0, 1};
  // Little CMS writes the platform it was built for, on Linux that of Apple.
  constexpr std::string_view kPlatform = "APPL";
  cmsUInt32Number size = 0;
  if (cmsSaveProfileToMem(Handle(), nullptr, &size) == 0) throw std::bad_alloc();
  std::string bytes(size, '\0');
  if (cmsSaveProfileToMem(Handle(), bytes.data(), &size) == 0) throw std::bad_alloc();
  bytes.replace(kDateOffset, kDate.size(), kDate.data(), kDate.size());
  bytes.replace(kPlatformOffset, kPlatform.size(), kPlatform);
  return bytes;
}

}  // namespace lumvik::host
