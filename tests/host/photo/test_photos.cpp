#include "photo/test_photos.h"

#include <gtest/gtest.h>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <stdexcept>

#include "api/settings_handle.h"
#include "support/raw_writer.h"

namespace lumvik::host::test {
namespace {

constexpr int kTestWidth = 96;
constexpr int kTestHeight = 64;

cv::Mat TestImage() {
  cv::Mat image(kTestHeight, kTestWidth, CV_8UC3);
  for (int y = 0; y < image.rows; ++y) {
    for (int x = 0; x < image.cols; ++x) {
      const auto noise = static_cast<uchar>((x * 37 + y * 101) % 23);
      image.at<cv::Vec3b>(y, x) = {static_cast<uchar>(x * 2 + noise), static_cast<uchar>(y * 3 + noise),
                                   static_cast<uchar>(120 + noise)};
    }
  }
  return image;
}

const char* ExtensionForTest(lumvik_host_format format) {
  switch (format) {
    case LUMVIK_HOST_FORMAT_JPEG:
      return ".jpg";
    case LUMVIK_HOST_FORMAT_PNG:
      return ".png";
    case LUMVIK_HOST_FORMAT_TIFF:
      return ".tif";
    case LUMVIK_HOST_FORMAT_BMP:
      return ".bmp";
    case LUMVIK_HOST_FORMAT_WEBP:
      return ".webp";
    default:
      throw std::invalid_argument("no image format");
  }
}

TestPreview EmptyPreview(int width, int height) {
  return {width, height, Bytes(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4)};
}

}  // namespace

Bytes PhotoBytes(lumvik_host_format format) {
  if (format == LUMVIK_HOST_FORMAT_RAW) {
    lumvik::test::RawOptions options;
    options.format = lumvik::test::RawFormat::kDng;
    return lumvik::test::MakeRawFile(TestImage(), options);
  }
  Bytes bytes;
  cv::imencode(ExtensionForTest(format), TestImage(), bytes);
  return bytes;
}

PhotoHandle OpenForTest(const std::string& path) {
  lumvik_host_photo* photo = nullptr;
  EXPECT_EQ(lumvik_host_open(path.c_str(), nullptr, &photo), LUMVIK_HOST_OK) << lumvik_host_last_error();
  return PhotoHandle(photo);
}

PhotoHandle OpenBytesForTest(const Bytes& bytes) {
  lumvik_host_photo* photo = nullptr;
  EXPECT_EQ(lumvik_host_open_bytes(bytes.data(), bytes.size(), nullptr, &photo), LUMVIK_HOST_OK)
      << lumvik_host_last_error();
  return PhotoHandle(photo);
}

void SetForTest(const PhotoHandle& photo, const Settings& settings) {
  lumvik_host_settings* const handle = OpenSettings(settings);
  EXPECT_EQ(lumvik_host_set_settings(photo.get(), handle), LUMVIK_HOST_OK) << lumvik_host_last_error();
  CloseSettings(handle);
}

TestPreview PreviewForTest(const PhotoHandle& photo, const lumvik_host_preview_options& options) {
  lumvik_host_preview_options used = options;
  used.struct_size = sizeof(used);
  TestPreview preview;
  const lumvik_host_status measured =
      lumvik_host_get_preview_size(photo.get(), &used, &preview.width, &preview.height);
  EXPECT_EQ(measured, LUMVIK_HOST_OK) << lumvik_host_last_error();
  if (measured != LUMVIK_HOST_OK) return preview;
  const int channels = used.channels == 0 ? 4 : used.channels;
  const auto row = static_cast<std::size_t>(preview.width * channels);
  preview.pixels.resize(
      (used.stride == 0 ? row : used.stride) * static_cast<std::size_t>(preview.height - 1) + row);
  EXPECT_EQ(lumvik_host_get_preview(photo.get(), &used, preview.pixels.data(), preview.pixels.size(), nullptr,
                                    nullptr),
            LUMVIK_HOST_OK)
      << lumvik_host_last_error();
  return preview;
}

TestPreview EnginePreview(const std::string& path, const Settings& settings) {
  const std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)> context(lumvik_create_context(),
                                                                                  lumvik_destroy_context);
  EXPECT_EQ(lumvik_load_arw(context.get(), path.c_str(), 1), 0);
  Apply(Completed(settings), context.get());
  TestPreview preview = EmptyPreview(lumvik_get_width(context.get()), lumvik_get_height(context.get()));
  EXPECT_EQ(lumvik_get_preview(context.get(), preview.pixels.data(), static_cast<int>(preview.pixels.size())),
            0);
  preview.width = lumvik_get_width(context.get());
  preview.height = lumvik_get_height(context.get());
  preview.pixels.resize(EmptyPreview(preview.width, preview.height).pixels.size());
  return preview;
}

lumvik_host_photo_info InfoForTest(const PhotoHandle& photo) {
  lumvik_host_photo_info info{};
  info.struct_size = sizeof(info);
  EXPECT_EQ(lumvik_host_get_info(photo.get(), &info), LUMVIK_HOST_OK) << lumvik_host_last_error();
  return info;
}

}  // namespace lumvik::host::test
