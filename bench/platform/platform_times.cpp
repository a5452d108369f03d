// Prints the CPU time, in milliseconds, that the process needs for a piece of the engine's work: the least of
// several repetitions. It takes nothing but the engine's interface, so that bench/compare-windows.sh can run
// it on both systems.
//
//   lumvik_platform_times WORK PHOTO   one of the works below, on a photo
//   lumvik_platform_times              print the names of the works
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumvik.h"
#include "process_cpu_time.h"

namespace lumvik::bench {
namespace {

constexpr int kRepetitions = 3;
// The clock of Windows has a resolution of 1/64 s.
constexpr double kMinSeconds = 0.2;

using Context = std::unique_ptr<EngineContext, decltype(&lumvik_destroy_context)>;
using Work = std::function<void(EngineContext*)>;

void Check(EngineContext* context, int status) {
  if (status != LUMVIK_OK) throw std::runtime_error(lumvik_last_error(context));
}

void SetTypical(EngineContext* c) {
  lumvik_reset_adjustments(c);
  lumvik_set_exposure(c, 0.5F);
  lumvik_set_contrast(c, 20);
  lumvik_set_highlights(c, -30);
  lumvik_set_shadows(c, 25);
  lumvik_set_vibrance(c, 16);
  lumvik_set_saturation(c, 5);
  lumvik_set_clarity(c, 15);
  lumvik_set_sharpening_amount(c, 40);
}

void SetEverything(EngineContext* c) {
  constexpr float kCurve[] = {0, 0, 0.25F, 0.2F, 0.5F, 0.5F, 0.75F, 0.8F, 1, 1};
  constexpr int kBands = 8;
  SetTypical(c);
  lumvik_set_tint(c, 10);
  lumvik_set_brightness(c, 10);
  lumvik_set_whites(c, -10);
  lumvik_set_blacks(c, 10);
  lumvik_set_tone_curve(c, 0, kCurve, 5);
  lumvik_set_texture(c, 15);
  lumvik_set_dehaze(c, 20);
  for (int band = 0; band < kBands; ++band) lumvik_set_hsl(c, band, 15, -10, 5);
  lumvik_set_split_toning(c, 0, 40, 20, 10);
  lumvik_set_split_toning(c, 1, 220, 14, 10);
  lumvik_set_nr_luminance(c, 25);
  lumvik_set_nr_color(c, 25);
  lumvik_set_distortion(c, 10);
  lumvik_set_ca_correction(c, 30);
  lumvik_set_lens_vignette(c, 30);
  lumvik_set_defringe(c, 30);
  lumvik_set_rotation(c, 1.5F);
  lumvik_set_perspective_h(c, 10);
  lumvik_set_crop(c, 0.02F, 0.02F, 0.96F, 0.96F);
  lumvik_set_vignette_amount(c, 20);
  lumvik_set_grain_amount(c, 20);
}

void Render(EngineContext* c) {
  Check(c, lumvik_process(c));
}

void Enhance(EngineContext* c) {
  constexpr size_t kSlots = 64;
  std::vector<float> slots(kSlots);
  Check(c, lumvik_auto_enhance(c, slots.data()));
}

void Straighten(EngineContext* c) {
  float angle = 0;
  Check(c, lumvik_auto_straighten(c, &angle));
}

void Crop(EngineContext* c) {
  float x = 0;
  float y = 0;
  float w = 0;
  float h = 0;
  Check(c, lumvik_auto_crop(c, &x, &y, &w, &h));
}

void Preview(EngineContext* c) {
  std::vector<uint8_t> pixels(size_t{4} * static_cast<size_t>(lumvik_get_width(c)) *
                              static_cast<size_t>(lumvik_get_height(c)));
  Check(c, lumvik_get_preview(c, pixels.data(), static_cast<int>(pixels.size())));
}

std::map<std::string, Work> AllWork(const std::string& photo) {
  const auto load = [photo](int quality) {
    return [photo, quality](EngineContext* c) { Check(c, lumvik_load_arw(c, photo.c_str(), quality)); };
  };
  const auto with = [](void (*set)(EngineContext*), void (*run)(EngineContext*)) {
    return [=](EngineContext* c) {
      set(c);
      run(c);
    };
  };
  return {{"load", load(1)},
          {"load-half", load(2)},
          {"load-quarter", load(4)},
          {"render", with(lumvik_reset_adjustments, Render)},
          {"render-typical", with(SetTypical, Render)},
          {"render-everything", with(SetEverything, Render)},
          {"preview", with(SetTypical, Preview)},
          {"auto-enhance", Enhance},
          {"auto-straighten", Straighten},
          {"auto-crop", Crop},
          {"segment", [](EngineContext* c) { Check(c, lumvik_segment_subject(c, -1, -1)); }},
          {"export-jpeg", [](EngineContext* c) { Check(c, lumvik_export_jpeg(c, "times.jpg", 90, 0, 1)); }},
          {"export-png", [](EngineContext* c) { Check(c, lumvik_export_png(c, "times.png", 16)); }}};
}

// In seconds.
double Time(const std::function<void()>& work, int times) {
  const double start = ProcessCpuTime();
  for (int i = 0; i < times; ++i) work();
  return ProcessCpuTime() - start;
}

double Milliseconds(const std::string& name, const std::string& photo) {
  const Context context(lumvik_create_context(), lumvik_destroy_context);
  Check(context.get(), lumvik_load_arw(context.get(), photo.c_str(), 1));
  Render(context.get());
  const Work work = AllWork(photo).at(name);
  const auto run = [&] { work(context.get()); };
  run();  // makes the tables that are made once
  int times = 1;
  double least = Time(run, times);
  while (least < kMinSeconds) least = Time(run, times *= 2);
  for (int i = 1; i < kRepetitions; ++i) least = std::min(least, Time(run, times));
  return least / times * 1e3;
}

}  // namespace
}  // namespace lumvik::bench

int main(int argc, char** argv) {
  using namespace lumvik::bench;
  try {
    if (argc == 1) {
      for (const auto& [name, work] : AllWork({})) std::cout << name << "\n";
    } else if (argc == 3) {
      std::cout << Milliseconds(argv[1], argv[2]) << "\n";
    } else {
      throw std::runtime_error("usage: lumvik_platform_times [WORK PHOTO]");
    }
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
