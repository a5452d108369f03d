// A sequence of interface calls on one context. Each call returns one of its documented statuses or throws,
// and leaves a context that can be used further.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <limits>
#include <opencv2/imgcodecs.hpp>

#include "api/float_setters.h"
#include "fuzz_input.h"
#include "support/raw_writer.h"

namespace lumvik::fuzz {
namespace {

constexpr int kMaxCalls = 40;
constexpr int kMaxColumns = 5000;
constexpr int kMaxPixels = 1 << 15;
constexpr int kMaxRowsPerColumn = 8;  // the automatic tools enlarge narrow images

cv::Mat Noise(cv::Size size) {
  cv::Mat image(size, CV_8UC3);
  cv::RNG(1).fill(image, cv::RNG::UNIFORM, 0, 256);
  return image;
}

// Files that load, that do not, and one that does not exist.
std::vector<std::string> WritePhotographs() {
  test::RawOptions dng;
  dng.format = test::RawFormat::kDng;
  return {WriteFile("a.arw", test::MakeRawFile(Noise({48, 32}))),
          WriteFile("wide.arw", test::MakeRawFile(Noise({1536, 16}))),
          WriteFile("a.dng", test::MakeRawFile(Noise({48, 32}), dng)),
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

  // Renders an image of any shape with whatever the calls before have set.
  void Play() {
    Try([&] { return lumvik_load_arw(context_, WriteImage().c_str(), Integer()); });
    for (int i = 0; i < kMaxCalls && input_.remaining_bytes() > 0; ++i) Try([&] { return Call(); });
    Try([&] { return lumvik_process(context_); });
  }

 private:
  template <typename Function>
  void Try(const Function& call) try {
    const int status = call();
    Require(status == 0 || status == -1 || status == -2);
    Require(status != -1 || *lumvik_last_error(context_) != '\0');
  } catch (const std::exception&) {
    // Exceptions of OpenCV and of the runtime leave a call.
  }

  // Any float: within the range, around its limits, far outside, special, or a random bit pattern.
  float Number(float lowest = -100, float highest = 100) {
    using Float = std::numeric_limits<float>;
    switch (input_.ConsumeIntegralInRange<int>(0, 5)) {
      case 0: {
        const auto bits = input_.ConsumeIntegral<uint32_t>();
        float number = 0;
        std::memcpy(&number, &bits, sizeof(number));
        return number;
      }
      case 1:
        return input_.PickValueInArray({0.0F, -0.0F, 1.0F, -1.0F, 1e30F, -1e30F, Float::denorm_min(),
                                        Float::min(), Float::max(), Float::lowest(), Float::infinity(),
                                        -Float::infinity(), Float::quiet_NaN()});
      case 2:
        return input_.PickValueInArray({lowest, highest, std::nextafter(lowest, Float::lowest()),
                                        std::nextafter(highest, Float::max()), 10 * lowest, 10 * highest,
                                        1000 * lowest, 1000 * highest});
      default:
        return input_.ConsumeFloatingPointInRange<float>(lowest, highest);
    }
  }

  int Integer() { return input_.ConsumeIntegralInRange<int>(-2, 20); }

  std::string Path() {
    return FilePath(
        input_.PickValueInArray({"out.jpg", "out.png", "out.tif", "out.txt", "no folder/out.png"}));
  }

  // Mostly setters: a load resets them all, and other calls take longer.
  int Call() {
    switch (input_.ConsumeIntegralInRange<int>(0, 15)) {
      case 0:
        return Load();
      case 1:
        return Write();
      case 2:
        return Read();
      case 3:
        return Suggest();
      case 4:
      case 5:
      case 6:
        SetSeveral();
        return 0;
      default:
        SetOne();
        return 0;
    }
  }

  void SetOne() {
    const test::FloatSetter& setter = input_.PickValueInArray(test::kFloatSetters);
    setter.set(context_, Number(setter.lowest, setter.highest));
  }

  int Load() {
    static const std::vector<std::string> photographs = WritePhotographs();
    switch (input_.ConsumeIntegralInRange<int>(0, 3)) {
      case 0:
        lumvik_unload(context_);
        return 0;
      case 1:
        return lumvik_load_arw(context_, PickFrom(photographs).c_str(), Integer());
      default:
        return lumvik_load_arw(context_, WriteImage().c_str(), Integer());
    }
  }

  const std::string& PickFrom(const std::vector<std::string>& paths) {
    return paths[input_.ConsumeIntegralInRange<size_t>(0, paths.size() - 1)];
  }

  // An image of any shape.
  std::string WriteImage() {
    const int columns = input_.ConsumeIntegralInRange<int>(1, kMaxColumns);
    const int max_rows = std::min(kMaxRowsPerColumn * columns, kMaxPixels / columns);
    const int rows = input_.ConsumeIntegralInRange<int>(1, max_rows);
    std::vector<uint8_t> bytes;
    cv::imencode(".bmp", Noise({columns, rows}), bytes);
    return WriteFile("any.bmp", bytes);
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

  // The buffers have the capacity that is passed, which may be too small for the result.
  int Read() {
    const auto pixels =
        static_cast<size_t>(lumvik_get_width(context_)) * static_cast<size_t>(lumvik_get_height(context_));
    std::vector<uint8_t> bytes(
        input_.PickValueInArray({size_t{0}, size_t{1}, pixels, 4 * pixels, 4 * pixels + 1}));
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
        return lumvik_segment_subject(context_, Number(0, 1), Number(0, 1));
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
        for (float& level : points) level = Number(0, 1);
        return lumvik_set_tone_curve(context_, Integer(), points.data(), static_cast<int>(points.size() / 2));
      }
      case 3:
        return lumvik_set_hsl(context_, Integer(), Number(-180, 180), Number(), Number());
      case 4:
        return lumvik_set_split_toning(context_, Integer(), Number(0, 360), Number(0, 100), Number());
      case 5:
        return lumvik_set_crop(context_, Number(0, 1), Number(0, 1), Number(0, 1), Number(0, 1));
      case 6:
        return lumvik_set_flip_h(context_, Integer());
      case 7:
        return lumvik_set_flip_v(context_, Integer());
      default:
        return lumvik_set_bg_blur(context_, Number(0, 100));
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
