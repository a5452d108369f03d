// A preview through the host library against one from the engine, both with the render.
#include <cstdint>
#include <memory>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "alternating.h"
#include "api/settings_handle.h"
#include "lumvik.h"
#include "lumvik_host.h"
#include "photo/engine_image.h"
#include "photo/photo_source.h"

namespace lumvik::bench {
namespace {

using Bytes = std::vector<std::uint8_t>;

const host::Settings kTypical = {{"exposure", 0.5F}, {"contrast", 20.0F},         {"highlights", -30.0F},
                                 {"shadows", 25.0F}, {"vibrance", 16.0F},         {"saturation", 5.0F},
                                 {"clarity", 15.0F}, {"sharpening_amount", 40.0F}};

Bytes Photograph(cv::Size size) {
  cv::Mat image = cv::imread(LUMVIK_TEST_DATA "/cat.jpg");
  cv::resize(image, image, size, 0, 0, cv::INTER_AREA);
  Bytes bytes;
  cv::imencode(".bmp", image, bytes);
  return bytes;
}

// Every render has other settings, as while a slider is dragged.
class Slider {
 public:
  host::Settings Next() {
    constexpr float kStep = 0.001F;
    constexpr int kSteps = 1000;
    step_ = (step_ + 1) % kSteps;
    host::Settings settings = kTypical;
    settings["exposure"] = 0.5F + kStep * static_cast<float>(step_);
    return settings;
  }

 private:
  int step_ = 0;
};

class HostPreview {
 public:
  HostPreview(const Bytes& photograph, std::size_t size) : pixels_(size) {
    Check(lumvik_host_open_bytes(photograph.data(), photograph.size(), nullptr, &photo_));
  }
  ~HostPreview() { lumvik_host_close(photo_); }
  HostPreview(const HostPreview&) = delete;
  HostPreview& operator=(const HostPreview&) = delete;

  void operator()() {
    lumvik_host_settings* const settings = host::OpenSettings(slider_.Next());
    Check(lumvik_host_set_settings(photo_, settings));
    host::CloseSettings(settings);
    Check(lumvik_host_get_preview(photo_, nullptr, pixels_.data(), pixels_.size(), nullptr, nullptr));
  }

 private:
  static void Check(lumvik_host_status status) {
    if (status != LUMVIK_HOST_OK) throw std::runtime_error(lumvik_host_last_error());
  }

  Slider slider_;
  Bytes pixels_;
  lumvik_host_photo* photo_ = nullptr;
};

class EnginePreview {
 public:
  EnginePreview(const Bytes& photograph, std::size_t size)
      : pixels_(size),
        source_(host::PhotoSource::OfBytes(
            {reinterpret_cast<const char*>(photograph.data()), photograph.size()})),
        image_(source_->Load(1)) {}

  void operator()() {
    host::Apply(host::Completed(slider_.Next()), image_->Context());
    lumvik_get_preview(image_->Context(), pixels_.data(), static_cast<int>(pixels_.size()));
  }

 private:
  Slider slider_;
  Bytes pixels_;
  std::unique_ptr<host::PhotoSource> source_;
  std::unique_ptr<host::EngineImage> image_;
};

Comparison FullSizePreview(cv::Size size) {
  const Bytes photograph = Photograph(size);
  const auto bytes = static_cast<std::size_t>(size.area()) * 4;
  const auto ours = std::make_shared<HostPreview>(photograph, bytes);
  const auto plain = std::make_shared<EnginePreview>(photograph, bytes);
  return {[ours] { (*ours)(); }, [plain] { (*plain)(); }, size.area(), static_cast<int64_t>(bytes)};
}

const bool kRegistered = [] {
  for (const cv::Size size : {cv::Size(1000, 667), cv::Size(2000, 1333), cv::Size(4096, 2731)}) {
    RegisterComparison("host_preview/typical/" + std::to_string(size.width),
                       [size] { return FullSizePreview(size); });
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
