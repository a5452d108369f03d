#include "save/image_export.h"

#include <cstdint>
#include <memory>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

#include "base/byte_matrix.h"
#include "files/file_reading.h"
#include "lumvik.h"
#include "photo/engine_call.h"
#include "photo/preview.h"
#include "save/output_format.h"

namespace lumvik::host {
namespace {

constexpr int kDeepBits = 16;
constexpr int kColorChannels = 3;

int ExportByEngine(EngineContext* context, const SavePlan& plan, const char* path) {
  constexpr int kReserved = 0;
  constexpr int kNoExif = 0;  // it would describe the source: its size, its orientation
  switch (plan.format) {
    case LUMVIK_HOST_FORMAT_JPEG:
      return lumvik_export_jpeg(context, path, plan.quality, kReserved, kNoExif);
    case LUMVIK_HOST_FORMAT_PNG:
      return lumvik_export_png(context, path, plan.bits);
    default:
      return lumvik_export_tiff(context, path);
  }
}

void ExportWholeImage(Photo& photo, const SavePlan& plan, const SafeFile& file) {
  file.WriteWith([&](const std::string& path) {
    return CallLibrary("cannot encode " + photo.Shown(),
                       [&] { return ExportByEngine(photo.Engine(), plan, path.c_str()); }) == LUMVIK_OK;
  });
}

std::string EncodeImage(const cv::Mat& bgr, const SavePlan& plan) {
  std::vector<int> parameters;
  if (plan.format == LUMVIK_HOST_FORMAT_JPEG) parameters = {cv::IMWRITE_JPEG_QUALITY, plan.quality};
  std::vector<std::uint8_t> bytes;
  if (!cv::imencode(ExtensionOf(plan.format), bgr, bytes, parameters)) throw std::bad_alloc();
  return {bytes.begin(), bytes.end()};
}

// 8 bits per channel.
cv::Mat ReducedFrame(const Frame& frame, const PreviewLayout& layout) {
  cv::Mat image(layout.height, layout.width, CV_8UC3);
  CopyPreview(frame, layout, image.data);
  cv::cvtColor(image, image, cv::COLOR_RGB2BGR);
  return image;
}

// 16 bits per channel. The engine gives them out in files only.
cv::Mat ReducedExport(Photo& photo, const SavePlan& plan, const PreviewLayout& layout, const SafeFile& file) {
  ExportWholeImage(photo, plan, file);
  const std::string bytes = ReadFile(file.TemporaryPath(), kMaxImageBytes);
  cv::Mat reduced;
  cv::resize(cv::imdecode(ByteMatrix(bytes), cv::IMREAD_UNCHANGED), reduced, {layout.width, layout.height}, 0,
             0, cv::INTER_AREA);
  return reduced;
}

}  // namespace

void ExportImage(Photo& photo, const SavePlan& plan, const SafeFile& file) {
  const std::shared_ptr<const Frame> frame = photo.RenderedFrame(0);
  lumvik_host_preview_options size{};
  size.max_width = plan.max_width;
  size.max_height = plan.max_height;
  size.channels = kColorChannels;
  const PreviewLayout layout = LayoutOf(size, *frame);
  if (layout.width == frame->width && layout.height == frame->height) {
    ExportWholeImage(photo, plan, file);
    return;
  }
  std::string bytes;
  CallLibrary("cannot encode " + photo.Shown(), [&] {
    bytes = EncodeImage(
        plan.bits == kDeepBits ? ReducedExport(photo, plan, layout, file) : ReducedFrame(*frame, layout),
        plan);
    return LUMVIK_OK;
  });
  file.Write(bytes);
}

}  // namespace lumvik::host
