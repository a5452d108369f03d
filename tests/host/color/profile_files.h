// Color profiles and images with them.
#ifndef LUMVIK_TESTS_HOST_COLOR_PROFILE_FILES_H_
#define LUMVIK_TESTS_HOST_COLOR_PROFILE_FILES_H_

#include <lcms2.h>

#include <array>
#include <cstdint>
#include <memory>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <string>
#include <vector>

namespace lumvik::host::test {

// An RGB color space with a power for its curve. Chromaticities are (x, y).
struct TestSpace {
  const char* name;
  std::array<std::array<double, 2>, 3> primaries;
  std::array<double, 2> white;
  double gamma;
};

inline constexpr std::array<double, 2> kWhiteD65 = {0.3127, 0.3290};
inline constexpr std::array<double, 2> kWhiteD50 = {0.3457, 0.3585};
inline constexpr TestSpace kAdobeLike = {
    "Adobe-like", {{{0.64, 0.33}, {0.21, 0.71}, {0.15, 0.06}}}, kWhiteD65, 2.2};
inline constexpr TestSpace kP3Like = {
    "P3-like", {{{0.68, 0.32}, {0.265, 0.69}, {0.15, 0.06}}}, kWhiteD65, 2.2};
inline constexpr TestSpace kProPhotoLike = {
    "ProPhoto-like", {{{0.7347, 0.2653}, {0.1596, 0.8404}, {0.0366, 0.0001}}}, kWhiteD50, 1.8};

inline std::string SaveProfile(cmsHPROFILE profile) {
  cmsUInt32Number size = 0;
  cmsSaveProfileToMem(profile, nullptr, &size);
  std::string bytes(size, '\0');
  cmsSaveProfileToMem(profile, bytes.data(), &size);
  cmsCloseProfile(profile);
  return bytes;
}

inline std::string MakeRgbProfile(const TestSpace& space) {
  const auto xyy = [](const std::array<double, 2>& xy) { return cmsCIExyY{xy[0], xy[1], 1}; };
  const cmsCIExyY white = xyy(space.white);
  const cmsCIExyYTRIPLE primaries = {xyy(space.primaries[0]), xyy(space.primaries[1]),
                                     xyy(space.primaries[2])};
  cmsToneCurve* const curve = cmsBuildGamma(nullptr, space.gamma);
  const std::array<cmsToneCurve*, 3> curves = {curve, curve, curve};
  cmsHPROFILE profile = cmsCreateRGBProfile(&white, &primaries, curves.data());
  cmsFreeToneCurve(curve);
  cmsMLU* const text = cmsMLUalloc(nullptr, 1);
  cmsMLUsetASCII(text, "en", "US", space.name);
  cmsWriteTag(profile, cmsSigProfileDescriptionTag, text);
  cmsMLUfree(text);
  return SaveProfile(profile);
}

inline std::string MakeGrayProfile(double gamma) {
  cmsToneCurve* const curve = cmsBuildGamma(nullptr, gamma);
  cmsHPROFILE profile = cmsCreateGrayProfile(cmsD50_xyY(), curve);
  cmsFreeToneCurve(curve);
  return SaveProfile(profile);
}

inline std::string EncodeTestImage(const cv::Mat& image, const std::string& extension,
                                   const std::vector<int>& options = {}) {
  std::vector<std::uint8_t> bytes;
  cv::imencode(extension, image, bytes, options);
  return {bytes.begin(), bytes.end()};
}

}  // namespace lumvik::host::test

#endif  // LUMVIK_TESTS_HOST_COLOR_PROFILE_FILES_H_
