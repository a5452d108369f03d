// A list of interface calls with their arguments, played on one context. Each answers with a status that is
// stated for it or with an exception, and the context stays as good as new.
#include <fuzzer/FuzzedDataProvider.h>

#include <cstring>
#include <exception>
#include <limits>
#include <opencv2/imgcodecs.hpp>

#include "api/float_setters.h"
#include "fuzz_input.h"
#include "support/raw_writer.h"

namespace lumvik::fuzz {
namespace {

constexpr int kMostCalls = 40;

cv::Mat Picture() {
  cv::Mat picture(32, 48, CV_8UC3);
  for (int y = 0; y < picture.rows; ++y) {
    for (int x = 0; x < picture.cols; ++x) picture.at<cv::Vec3b>(y, x) = cv::Vec3i(5 * x, 7 * y, 3 * (x + y));
  }
  return picture;
}

// The files that may be loaded, the last one not there.
std::vector<std::string> WritePhotographs() {
  test::RawOptions dng;
  dng.format = test::RawFormat::kDng;
  std::vector<uint8_t> png;
  cv::imencode(".png", Picture(), png);
  return {WriteFile("a.png", png),
          WriteFile("a.arw", test::MakeRawFile(Picture())),
          WriteFile("a.dng", test::MakeRawFile(Picture(), dng)),
          WriteFile("broken.png", {1, 2, 3}),
          WriteFile("broken.arw", std::vector<uint8_t>(1000, 'Z')),
          FilePath("missing.arw")};
}

class Player {
 public:
  Player(const uint8_t* data, size_t size) : input_(data, size) {}
  ~Player() {
    lumvik_unload(context_);
    Require(lumvik_get_width(context_) == 0 && lumvik_get_height(context_) == 0);
    Require(lumvik_process(context_) == -1);
    Require(std::strcmp(lumvik_last_error(context_), "no image loaded") == 0);
    lumvik_destroy_context(context_);
  }
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  void Play() {
    for (int i = 0; i < kMostCalls && input_.remaining_bytes() > 0; ++i) {
      try {
        const int status = Call();
        Require(status == 0 || status == -1 || status == -2);
        Require(status != -1 || *lumvik_last_error(context_) != '\0');
      } catch (const std::exception&) {
        // OpenCV's and the runtime's own leave a call.
      }
    }
  }

 private:
  // Mostly within what the sliders of a host give.
  float Number() {
    switch (input_.ConsumeIntegralInRange<int>(0, 9)) {
      case 0:
        return input_.ConsumeFloatingPoint<float>();
      case 1:
        return input_.PickValueInArray({0.0F, 1.0F, -1.0F, 6500.0F, std::numeric_limits<float>::infinity(),
                                        -std::numeric_limits<float>::infinity(),
                                        std::numeric_limits<float>::quiet_NaN()});
      case 2:
        return input_.ConsumeFloatingPointInRange<float>(-0.5F, 1.5F);
      default:
        return static_cast<float>(input_.ConsumeIntegralInRange<int>(-150, 150));
    }
  }

  int Integer() { return input_.ConsumeIntegralInRange<int>(-2, 20); }

  std::string Path() {
    return FilePath(
        input_.PickValueInArray({"out.jpg", "out.png", "out.tif", "out.txt", "no folder/out.png"}));
  }

  int Call() {
    switch (input_.ConsumeIntegralInRange<int>(0, 6)) {
      case 0:
        return Load();
      case 1:
        return Write();
      case 2:
        return Read();
      case 3:
        return Suggest();
      case 4:
        SetSeveral();
        return 0;
      default:
        SetOne();
        return 0;
    }
  }

  void SetOne() {
    const test::FloatSetter& setter = input_.PickValueInArray(test::kFloatSetters);
    setter.set(context_, Number());
  }

  int Load() {
    static const std::vector<std::string> photographs = WritePhotographs();
    const int which = input_.ConsumeIntegralInRange<int>(0, static_cast<int>(photographs.size()));
    if (which < static_cast<int>(photographs.size())) {
      return lumvik_load_arw(context_, photographs[static_cast<size_t>(which)].c_str(), Integer());
    }
    lumvik_unload(context_);
    return 0;
  }

  int Write() {
    const std::string path = Path();
    switch (input_.ConsumeIntegralInRange<int>(0, 3)) {
      case 0:
        return lumvik_export_jpeg(context_, path.c_str(), Integer(), 0, Integer());
      case 1:
        return lumvik_export_png(context_, path.c_str(), Integer());
      case 2:
        return lumvik_export_tiff(context_, path.c_str());
      default:
        return lumvik_export_subject_png(context_, path.c_str());
    }
  }

  // Every buffer has the size that the call is told of.
  int Read() {
    std::vector<uint8_t> bytes(input_.PickValueInArray({0U, 1U, 1535U, 1536U, 6143U, 6144U, 10000U}));
    std::vector<uint32_t> bins(size_t{4} * LUMVIK_HISTOGRAM_BINS);
    ExifInfo info;
    uint8_t empty = 0;  // an empty vector may have no pointer, and null is another failure
    uint8_t* out = bytes.empty() ? &empty : bytes.data();
    switch (input_.ConsumeIntegralInRange<int>(0, 4)) {
      case 0:
        return lumvik_process(context_);
      case 1:
        return lumvik_get_preview(context_, out, static_cast<int>(bytes.size()));
      case 2:
        return lumvik_get_mask(context_, out, static_cast<int>(bytes.size()));
      case 3:
        return lumvik_get_exif(context_, &info);
      default:
        return lumvik_get_histogram(context_, &bins[0], &bins[256], &bins[512], &bins[768]);
    }
  }

  int Suggest() {
    float slots[LUMVIK_ENHANCE_SLOTS];
    switch (input_.ConsumeIntegralInRange<int>(0, 5)) {
      case 0:
        return lumvik_auto_exposure(context_, slots);
      case 1:
        return lumvik_auto_white_balance(context_, slots, slots + 1);
      case 2:
        return lumvik_auto_enhance(context_, slots);
      case 3:
        return lumvik_auto_crop(context_, slots, slots + 1, slots + 2, slots + 3);
      case 4:
        return lumvik_auto_straighten(context_, slots);
      default:
        return lumvik_segment_subject(context_, Number(), Number());
    }
  }

  void SetSeveral() {
    switch (input_.ConsumeIntegralInRange<int>(0, 8)) {
      case 0:
        return lumvik_reset_adjustments(context_);
      case 1:
        return lumvik_reset_tone_curve(context_, Integer());
      case 2: {
        std::vector<float> points(size_t{2} * input_.ConsumeIntegralInRange<size_t>(0, 12));
        for (float& level : points) level = Number();
        return lumvik_set_tone_curve(context_, Integer(), points.data(), static_cast<int>(points.size() / 2));
      }
      case 3:
        return lumvik_set_hsl(context_, Integer(), Number(), Number(), Number());
      case 4:
        return lumvik_set_split_toning(context_, Integer(), Number(), Number(), Number());
      case 5:
        return lumvik_set_crop(context_, Number(), Number(), Number(), Number());
      case 6:
        return lumvik_set_flip_h(context_, Integer());
      case 7:
        return lumvik_set_flip_v(context_, Integer());
      default:
        return lumvik_set_bg_blur(context_, Number());
    }
  }

  FuzzedDataProvider input_;
  EngineContext* context_ = lumvik_create_context();
};

}  // namespace
}  // namespace lumvik::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lumvik::fuzz::Player(data, size).Play();
  return 0;
}
