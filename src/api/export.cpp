// Exporting the render as JPEG, PNG or TIFF.
#include <algorithm>
#include <opencv2/core/utility.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "api/engine_context.h"
#include "base/large_image.h"
#include "image/exif_splice.h"
#include "image/image_writer.h"

namespace lumvik {
namespace {

constexpr int kMinJpegQuality = 1;
constexpr int kMaxJpegQuality = 100;
constexpr int kDeepPngBits = 16;

constexpr int kConversionRows = 8;  // per block, so that intermediate results stay in the cache

// Converted on all threads, because a single-threaded conversion would take a noticeable part of an export.
cv::Mat ToBgr16(const ImageBuffer& image) {
  cv::Mat bgr = LargeImage(image.size(), CV_16UC3);
  cv::parallel_for_(cv::Range(0, image.rows), [&](const cv::Range& range) {
    for (int y = range.start; y < range.end; y += kConversionRows) {
      const cv::Range part(y, std::min(y + kConversionRows, range.end));
      cv::Mat rows = bgr.rowRange(part);
      cv::cvtColor(ToRgb16(image.rowRange(part)), rows, cv::COLOR_RGB2BGR);
    }
  });
  return bgr;
}

// `convert` turns the render into the encoder's input; `failure` is the last-error text of a failed write.
int Export(EngineContext* context, const char* path, cv::Mat (*convert)(const ImageBuffer&),
           const std::vector<int>& params, const char* failure) {
  if (context == nullptr || path == nullptr || !RequireImage(*context)) return kFailure;
  RenderIfStale(*context);
  return WriteImageFile(path, convert(context->rendered), params) ? kSuccess : Fail(*context, failure);
}

}  // namespace
}  // namespace lumvik

int lumvik_export_jpeg(EngineContext* ctx, const char* path, int quality, int /*reserved*/, int keep_exif) {
  const int clamped = std::clamp(quality, lumvik::kMinJpegQuality, lumvik::kMaxJpegQuality);
  const int status =
      lumvik::Export(ctx, path, lumvik::ToBgr8, {cv::IMWRITE_JPEG_QUALITY, clamped}, "JPEG write failed");
  // Missing or uncopyable EXIF does not fail the export.
  if (status == lumvik::kSuccess && keep_exif != 0 && !ctx->source_path.empty()) {
    lumvik::CopyExifToJpeg(ctx->source_path, path);
  }
  return status;
}

int lumvik_export_png(EngineContext* ctx, const char* path, int bit_depth) {
  const auto convert = bit_depth == lumvik::kDeepPngBits ? lumvik::ToBgr16 : lumvik::ToBgr8;
  return lumvik::Export(ctx, path, convert, {}, "PNG write failed");
}

int lumvik_export_tiff(EngineContext* ctx, const char* path) {
  return lumvik::Export(ctx, path, lumvik::ToBgr16, {}, "TIFF write failed");
}
