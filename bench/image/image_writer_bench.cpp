// Exports of a rendered photograph, against the encoder alone.
#include <filesystem>
#include <memory>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "alternating.h"
#include "lumvik.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::bench {
namespace {

constexpr int kJpegQuality = 90;
constexpr int kDeepBits = 16;

struct Format {
  const char* extension;
  int depth;  // of the encoded matrix
  std::vector<int> params;
  void (*write)(EngineContext* context, const char* path);
};

const Format kFormats[] = {
    {".jpg",
     CV_8U,
     {cv::IMWRITE_JPEG_QUALITY, kJpegQuality},
     [](EngineContext* context, const char* path) { lumvik_export_jpeg(context, path, kJpegQuality, 0, 0); }},
    {".png",
     CV_16U,
     {},
     [](EngineContext* context, const char* path) { lumvik_export_png(context, path, kDeepBits); }},
    {".tif", CV_16U, {}, [](EngineContext* context, const char* path) { lumvik_export_tiff(context, path); }},
};

Comparison Export(cv::Size size, const Format& format) {
  const auto folder = std::make_shared<test::TempDir>();
  const std::shared_ptr<EngineContext> context(lumvik_create_context(), lumvik_destroy_context);
  const std::string source = folder->File("source.png");
  cv::Mat picture;
  cv::cvtColor(test::ResizedPhotograph("cat.jpg", size), picture, cv::COLOR_RGBA2BGR);
  cv::imwrite(source, picture);
  lumvik_load_arw(context.get(), source.c_str(), 1);
  lumvik_set_temperature(context.get(), 6500);  // neutral
  lumvik_process(context.get());

  cv::Mat encodable;
  picture.convertTo(encodable, format.depth, format.depth == CV_8U ? 255.0 / 65535 : 1);
  const std::string path = folder->File(std::string("export") + format.extension);
  return {[=] { format.write(context.get(), path.c_str()); },
          [=, keep = folder] {
            std::vector<uint8_t> encoded;
            cv::imencode(format.extension, encodable, encoded, format.params);
          },
          static_cast<int64_t>(picture.total()), static_cast<int64_t>(picture.total() * picture.elemSize()),
          [=] { std::filesystem::remove(path); }};  // so that every export creates a new file
}

const bool kRegistered = [] {
  for (const cv::Size size : {cv::Size(2000, 1333), cv::Size(4096, 2731)}) {
    for (const Format& format : kFormats) {
      RegisterComparison(std::string("export/") + (format.extension + 1) + "/" + std::to_string(size.width),
                         [size, &format] { return Export(size, format); });
    }
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
