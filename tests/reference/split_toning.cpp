#include "reference/split_toning.h"

#include "reference/clamp.h"
#include "reference/hsl_color.h"
#include "reference/luminance.h"

namespace lumvik::reference {

void SplitToning(cv::Mat& working, const Adjustments& adjustments) {
  const SplitToningSettings& settings = adjustments.split_toning;
  if (settings.highlight_saturation == 0 && settings.shadow_saturation == 0) return;
  const float highlight_hue = settings.highlight_hue / 360.0F;
  const float shadow_hue = settings.shadow_hue / 360.0F;
  const float highlight_saturation = settings.highlight_saturation / 100.0F;
  const float shadow_saturation = settings.shadow_saturation / 100.0F;
  const float balance = settings.balance / 100.0F * 0.3F;
  for (int y = 0; y < working.rows; ++y) {
    auto* row = working.ptr<cv::Vec4f>(y);
    for (int x = 0; x < working.cols; ++x) {
      cv::Vec4f& pixel = row[x];
      const float luminance = Luminance(pixel);
      const float highlight = ClampUnit(luminance + balance);
      const float shadow = ClampUnit(1.0F - luminance - balance);
      const Hsl hsl = rgb_to_hsl(pixel[0], pixel[1], pixel[2]);
      const float k = shadow * shadow_saturation + highlight * highlight_saturation;
      const float s = ClampUnit(k * 0.3F + hsl.s);
      // Linear in the hue, without wrapping around.
      const float h = hsl.h + (shadow * shadow_hue + highlight * highlight_hue - hsl.h) * (k * 0.5F);
      const Rgb rgb = hsl_to_rgb(h, s, hsl.l);
      pixel[0] = rgb.r;
      pixel[1] = rgb.g;
      pixel[2] = rgb.b;
    }
  }
}

}  // namespace lumvik::reference
