// Rendering, and reading back the result: size, preview, histogram.
#include <algorithm>

#include "analysis/histogram.h"
#include "analysis/preview.h"
#include "api/engine_context.h"

namespace lumvik {
namespace {

constexpr int kPreviewChannels = 4;

void RenderAnew(EngineContext& context) {
  Render(context);
  context.render_valid = true;
}

const cv::Mat& CurrentImage(const EngineContext& context) {
  if (context.render_valid && !context.rendered.empty()) return context.rendered;
  return context.decoded.image.empty() ? context.source : context.decoded.image;
}

}  // namespace
}  // namespace lumvik

int lumvik_process(EngineContext* ctx) {
  if (ctx == nullptr || !lumvik::RequireImage(*ctx)) return lumvik::kFailure;
  lumvik::RenderAnew(*ctx);
  return lumvik::kSuccess;
}

int lumvik_get_width(EngineContext* ctx) {
  return ctx == nullptr ? 0 : lumvik::CurrentImage(*ctx).cols;
}

int lumvik_get_height(EngineContext* ctx) {
  return ctx == nullptr ? 0 : lumvik::CurrentImage(*ctx).rows;
}

int lumvik_get_preview(EngineContext* ctx, uint8_t* out, int capacity) {
  if (ctx == nullptr || out == nullptr || !lumvik::RequireImage(*ctx)) return lumvik::kFailure;
  lumvik::RenderAnew(*ctx);
  const cv::Mat& rendered = ctx->rendered;
  if (rendered.empty()) return lumvik::Fail(*ctx, "pipeline produced empty result");
  if (capacity < static_cast<int>(rendered.total()) * lumvik::kPreviewChannels) {
    return lumvik::Fail(*ctx, "output buffer too small");
  }
  cv::Mat preview(rendered.size(), CV_8UC(lumvik::kPreviewChannels), out);
  lumvik::RenderPreview(rendered, ctx->mask_valid ? ctx->mask : cv::Mat(), ctx->bg_blur, preview);
  return lumvik::kSuccess;
}

int lumvik_get_histogram(EngineContext* ctx, uint32_t* red, uint32_t* green, uint32_t* blue,
                         uint32_t* luminance) {
  if (ctx == nullptr || red == nullptr || green == nullptr || blue == nullptr || luminance == nullptr) {
    return lumvik::kFailure;
  }
  if (!ctx->render_valid) {
    if (!lumvik::RequireImage(*ctx)) return lumvik::kFailure;
    lumvik::RenderAnew(*ctx);
  }
  const lumvik::Histograms counts = lumvik::CountLevels(ctx->rendered);
  std::copy(counts.red.begin(), counts.red.end(), red);
  std::copy(counts.green.begin(), counts.green.end(), green);
  std::copy(counts.blue.begin(), counts.blue.end(), blue);
  std::copy(counts.luminance.begin(), counts.luminance.end(), luminance);
  return lumvik::kSuccess;
}
