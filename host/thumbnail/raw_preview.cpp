#include "thumbnail/raw_preview.h"

#include <array>
#include <opencv2/imgproc.hpp>
#include <optional>

#include "base/failure.h"
#include "color/color_profile.h"
#include "color/embedded_profile.h"
#include "color/profile_attachment.h"
#include "color/srgb_conversion.h"
#include "files/jpeg_metadata.h"
#include "image/embedded_preview.h"
#include "metadata/raw_facts.h"

namespace lumvik::host {
namespace {

Failure DamagedPreview(const std::string& what) {
  return {LUMVIK_HOST_DAMAGED, what + ": the preview in the RAW file is damaged or in an unknown format"};
}

// By EXIF code. The flip comes after the transposition.
cv::Mat Upright(const cv::Mat& image, std::int32_t orientation) {
  constexpr int kTurn = -1;
  constexpr int kNoFlip = 2;
  struct Steps {
    bool transpose;
    int flip;  // of cv::flip
  };
  constexpr std::array<Steps, 9> kSteps = {{{false, kNoFlip},
                                            {false, kNoFlip},
                                            {false, 1},
                                            {false, kTurn},
                                            {false, 0},
                                            {true, kNoFlip},
                                            {true, 1},
                                            {true, kTurn},
                                            {true, 0}}};
  const Steps& steps = kSteps.at(static_cast<std::size_t>(orientation));
  cv::Mat upright = image;
  if (steps.transpose) cv::transpose(upright, upright);
  if (steps.flip != kNoFlip) cv::flip(upright, upright, steps.flip);
  return upright;
}

void TakeJpeg(const std::string& jpeg, RawPreview& preview) {
  preview.is_srgb = !StatesOtherColors(jpeg, LUMVIK_HOST_FORMAT_JPEG);
  if (const auto orientation = OrientationOfJpeg(jpeg)) preview.orientation = *orientation;
  const bool is_adobe = !preview.is_srgb && !HasIccProfile(jpeg, LUMVIK_HOST_FORMAT_JPEG);
  preview.jpeg = WithoutMetadata(jpeg);
  if (!is_adobe) return;  // stated by EXIF, which is gone
  preview.jpeg = AttachProfile(preview.jpeg, LUMVIK_HOST_FORMAT_JPEG, ColorProfile::AdobeRgb().Serialize());
}

}  // namespace

RawPreview ReadRawPreview(const std::string& path, const std::string& what) {
  const EmbeddedPreview embedded = ReadEmbeddedPreview(path);
  if (embedded.status == PreviewStatus::kUnreadable) {
    throw Failure(LUMVIK_HOST_DAMAGED, what + ": it is damaged");
  }
  if (embedded.status == PreviewStatus::kNone) {
    throw Failure(LUMVIK_HOST_UNSUPPORTED, what + ": the RAW file has no preview");
  }
  if (!embedded.image || embedded.delivery_error != 0) throw DamagedPreview(what);
  RawPreview preview;
  if (const std::optional<RawFacts> facts = ReadRawFacts(path)) preview.orientation = facts->orientation;
  if (embedded.image->type == LIBRAW_IMAGE_JPEG) {
    TakeJpeg({reinterpret_cast<const char*>(embedded.image->data), embedded.image->data_size}, preview);
    return preview;
  }
  const cv::Mat bitmap = PreviewBitmap(*embedded.image);
  if (bitmap.empty()) throw DamagedPreview(what);
  cv::cvtColor(bitmap, preview.bitmap, cv::COLOR_RGB2BGR);
  return preview;
}

cv::Mat DecodePreview(const RawPreview& preview, const std::string& what) {
  const cv::Mat pixels =
      preview.jpeg.empty() ? preview.bitmap : DecodeToSrgb(preview.jpeg, LUMVIK_HOST_FORMAT_JPEG);
  if (pixels.empty()) throw DamagedPreview(what);
  return Upright(pixels, preview.orientation);
}

}  // namespace lumvik::host
