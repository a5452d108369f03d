// A sequence of calls on handles in every state: open, closed, null, made up, of another kind. Each returns a
// status, and a failure sets a text.
#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <limits>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "fuzz_input.h"
#include "lumvik_host.h"
#include "support/raw_writer.h"

namespace lumvik::fuzz {
namespace {

constexpr int kMaxHostCalls = 40;
constexpr std::size_t kMaxObjects = 4;
constexpr std::size_t kRoom = std::size_t{4} * 48 * 32;

const std::string& SmallRaw() {
  static const std::string path = [] {
    cv::Mat image(32, 48, CV_8UC3);
    cv::RNG(1).fill(image, cv::RNG::UNIFORM, 0, 256);
    return WriteFile("small.arw", test::MakeRawFile(image));
  }();
  return path;
}

class HostPlayer {
 public:
  HostPlayer(const uint8_t* data, size_t size) : input_(data, size) {}
  ~HostPlayer() {
    for (lumvik_host_photo* photo : photos_) lumvik_host_close(photo);
    for (lumvik_host_settings* settings : settings_) lumvik_host_settings_close(settings);
  }
  HostPlayer(const HostPlayer&) = delete;
  HostPlayer& operator=(const HostPlayer&) = delete;

  void Play() {
    for (int i = 0; i < kMaxHostCalls && input_.remaining_bytes() > 0; ++i) {
      const lumvik_host_status status = Call();
      Require(status >= LUMVIK_HOST_OK && status <= LUMVIK_HOST_INTERNAL);
      Require(status == LUMVIK_HOST_OK || *lumvik_host_last_error() != '\0');
    }
  }

 private:
  template <typename Handle>
  Handle* Pick(const std::vector<Handle*>& handles) {
    const auto choice = input_.ConsumeIntegralInRange<std::size_t>(0, handles.size() + 2);
    if (choice < handles.size()) return handles[choice];
    if (choice == handles.size()) return nullptr;
    return reinterpret_cast<Handle*>(input_.ConsumeIntegral<std::uintptr_t>());
  }
  lumvik_host_photo* Photo() {
    return input_.ConsumeIntegralInRange<int>(0, 20) == 0
               ? reinterpret_cast<lumvik_host_photo*>(Pick(settings_))
               : Pick(photos_);
  }
  lumvik_host_settings* Settings() {
    return input_.ConsumeIntegralInRange<int>(0, 20) == 0
               ? reinterpret_cast<lumvik_host_settings*>(Pick(photos_))
               : Pick(settings_);
  }

  const char* Key() {
    const auto index = input_.ConsumeIntegralInRange<std::size_t>(0, lumvik_host_setting_count());
    lumvik_host_setting_info info{};
    info.struct_size = sizeof(info);
    if (lumvik_host_describe_setting(index, &info) != LUMVIK_HOST_OK) {
      text_ = input_.ConsumeRandomLengthString(20);
      return input_.ConsumeBool() ? nullptr : text_.c_str();
    }
    return info.key;
  }

  float Number() {
    using Float = std::numeric_limits<float>;
    if (input_.ConsumeBool()) return input_.ConsumeFloatingPointInRange<float>(-150, 150);
    return input_.PickValueInArray(
        {0.0F, Float::quiet_NaN(), Float::infinity(), -Float::infinity(), Float::max(), Float::denorm_min()});
  }

  int32_t Integer() {
    return input_.ConsumeBool() ? input_.ConsumeIntegralInRange<int32_t>(-2, 20)
                                : input_.ConsumeIntegral<int32_t>();
  }

  lumvik_host_status Call() {
    switch (input_.ConsumeIntegralInRange<int>(0, 3)) {
      case 0:
        return Open();
      case 1:
        return Change();
      case 2:
        return Develop();
      default:
        return Read();
    }
  }

  lumvik_host_status Open() {
    lumvik_host_photo* photo = nullptr;
    lumvik_host_settings* settings = nullptr;
    lumvik_host_status status = LUMVIK_HOST_OK;
    switch (input_.ConsumeIntegralInRange<int>(0, 5)) {
      case 0: {
        lumvik_host_open_options options{};
        options.struct_size =
            static_cast<uint32_t>(sizeof(options)) + input_.ConsumeIntegralInRange<uint32_t>(0, 1) - 1;
        options.quality = input_.ConsumeIntegralInRange<int32_t>(-1, 5);
        options.proxy_first = input_.ConsumeBool() ? 1 : 0;
        status = lumvik_host_open(SmallRaw().c_str(), input_.ConsumeBool() ? nullptr : &options, &photo);
        break;
      }
      case 1:
        status = lumvik_host_close(Photo());
        break;
      case 2:
        status = lumvik_host_settings_create(&settings);
        break;
      case 3:
        status = lumvik_host_settings_copy(Settings(), &settings);
        break;
      case 4:
        status = lumvik_host_settings_close(Settings());
        break;
      default:
        status = lumvik_host_get_settings(Photo(), &settings);
        break;
    }
    Require((photo == nullptr && settings == nullptr) || status == LUMVIK_HOST_OK);
    Keep(photo, &photos_, lumvik_host_close);
    Keep(settings, &settings_, lumvik_host_settings_close);
    return status;
  }

  // Closed handles are kept too, to be used again.
  template <typename Handle>
  static void Keep(Handle* handle, std::vector<Handle*>* handles, lumvik_host_status (*close)(Handle*)) {
    if (handle == nullptr) return;
    if (handles->size() == kMaxObjects) {
      close(handles->front());
      handles->erase(handles->begin());
    }
    handles->push_back(handle);
  }

  lumvik_host_status Change() {
    switch (input_.ConsumeIntegralInRange<int>(0, 8)) {
      case 0: {
        std::array<float, 8> points{};
        for (float& level : points) level = Number();
        return lumvik_host_settings_set_curve(
            Settings(), Key(), points.data(),
            input_.ConsumeIntegralInRange<std::size_t>(0, points.size() / 2));
      }
      case 1:
        return lumvik_host_settings_set_flag(Settings(), Key(), Integer());
      case 2:
        return lumvik_host_settings_merge(Settings(), Settings());
      case 3:
        return lumvik_host_settings_remove_neutral(Settings());
      case 4:
        return lumvik_host_settings_remove(Settings(), Key());
      default:
        return lumvik_host_settings_set_number(Settings(), Key(), Number());
    }
  }

  lumvik_host_status Develop() {
    switch (input_.ConsumeIntegralInRange<int>(0, 7)) {
      case 0:
        return lumvik_host_set_settings(Photo(), Settings());
      case 1:
        return lumvik_host_post(Photo(), Settings(), nullptr, nullptr, nullptr, nullptr);
      case 2:
        return lumvik_host_wait(Photo(), 0, -1);
      case 3:
        return lumvik_host_cancel(Photo());
      case 4:
        return lumvik_host_set_quality(Photo(), input_.ConsumeIntegralInRange<int32_t>(-1, 5));
      case 5:
        return lumvik_host_wait_for_quality(Photo(), -1);
      case 6:
        return lumvik_host_find_subject(Photo(), Number(), Number());
      default:
        return lumvik_host_render(Photo());
    }
  }

  lumvik_host_status Read() {
    std::vector<uint8_t> room(input_.PickValueInArray({std::size_t{1}, std::size_t{100}, kRoom}));
    int32_t width = 0;
    int32_t height = 0;
    switch (input_.ConsumeIntegralInRange<int>(0, 5)) {
      case 0: {
        lumvik_host_preview_options options{};
        options.struct_size = sizeof(options);
        options.max_width = Integer();
        options.channels = input_.ConsumeIntegralInRange<int32_t>(-1, 5);
        options.stride = input_.ConsumeBool() ? 0 : input_.ConsumeIntegral<std::size_t>();
        options.background_blur = Number();
        return lumvik_host_get_preview(Photo(), &options, room.data(), room.size(), &width, &height);
      }
      case 1:
        return lumvik_host_get_mask(Photo(), room.data(), room.size(), &width, &height);
      case 2:
        return lumvik_host_get_error(Photo(), reinterpret_cast<char*>(room.data()), room.size());
      case 3: {
        lumvik_host_settings* suggested = nullptr;
        const lumvik_host_status status =
            lumvik_host_suggest(Photo(), input_.ConsumeIntegralInRange<uint32_t>(0, 40), &suggested);
        Keep(suggested, &settings_, lumvik_host_settings_close);
        return status;
      }
      case 4: {
        lumvik_host_save_options options{};
        options.struct_size = sizeof(options);
        options.format = input_.ConsumeIntegralInRange<int32_t>(-1, 6);
        options.bits = input_.PickValueInArray({0, 8, 16, 7});
        options.quality = Integer();
        options.max_width = Integer();
        options.metadata = LUMVIK_HOST_METADATA_NONE;
        uint8_t* data = nullptr;
        size_t size = 0;
        const lumvik_host_status status = lumvik_host_save_bytes(Photo(), &options, &data, &size);
        Require((status == LUMVIK_HOST_OK) == (data != nullptr));
        lumvik_host_free(data);
        return status;
      }
      default: {
        char* json = nullptr;
        const lumvik_host_status status = lumvik_host_settings_to_json(Settings(), &json);
        Require((status == LUMVIK_HOST_OK) == (json != nullptr));
        lumvik_host_free(json);
        return status;
      }
    }
  }

  FuzzedDataProvider input_;
  std::string text_;
  std::vector<lumvik_host_photo*> photos_;
  std::vector<lumvik_host_settings*> settings_;
};

}  // namespace
}  // namespace lumvik::fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  lumvik::fuzz::HostPlayer(data, size).Play();
  return 0;
}
