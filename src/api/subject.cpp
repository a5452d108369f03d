// Segmenting the subject, and exporting it as a cutout.
#include <cstring>
#include <opencv2/imgcodecs.hpp>

#include "api/engine_context.h"
#include "image/image_writer.h"
#include "segmentation/subject_cutout.h"
#include "segmentation/subject_mask.h"

namespace lumvik {
namespace {

// Status of a failure after the checks of arguments and state.
constexpr int kOperationFailed = -2;
constexpr int kPngCompression = 6;

}  // namespace
}  // namespace lumvik

int lumvik_segment_subject(EngineContext* ctx, float subject_x, float subject_y) {
  if (ctx == nullptr) return lumvik::kFailure;
  // Only RAW files are segmented.
  if (ctx->decoded.image.empty()) return lumvik::Fail(*ctx, "no image loaded");
  if (!lumvik::SegmentSubject(ctx->decoded.image, subject_x, subject_y, ctx->mask)) {
    lumvik::Fail(*ctx, "GrabCut failed");
    return lumvik::kOperationFailed;
  }
  ctx->mask_valid = true;
  return lumvik::kSuccess;
}

int lumvik_get_mask(EngineContext* ctx, uint8_t* out, int capacity) {
  if (ctx == nullptr || out == nullptr) return lumvik::kFailure;
  const cv::Mat& mask = ctx->mask;
  if (!ctx->mask_valid || mask.empty()) {
    return lumvik::Fail(*ctx, "no segmentation mask — call lumvik_segment_subject first");
  }
  const size_t size = mask.total();
  if (capacity < static_cast<int>(size)) return lumvik::kOperationFailed;
  std::memcpy(out, mask.data, size);
  return lumvik::kSuccess;
}

int lumvik_export_subject_png(EngineContext* ctx, const char* path) {
  if (ctx == nullptr || path == nullptr) return lumvik::kFailure;
  if (!ctx->mask_valid) return lumvik::Fail(*ctx, "no segmentation mask");
  lumvik::RenderIfStale(*ctx);
  const cv::Mat cutout = lumvik::SubjectCutout(ctx->rendered, ctx->mask);
  if (!lumvik::WriteImageFile(path, cutout, {cv::IMWRITE_PNG_COMPRESSION, lumvik::kPngCompression})) {
    lumvik::Fail(*ctx, "failed to write PNG");
    return lumvik::kOperationFailed;
  }
  return lumvik::kSuccess;
}
