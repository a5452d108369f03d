// Repeatedly loads, edits, previews and exports photographs of every kind, like a host that runs for weeks,
// and prints the resident memory. Fails if it keeps growing.
//
//   lumvik_soak [CYCLES]
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <opencv2/imgcodecs.hpp>
#include <stdexcept>

#include "lumvik.h"
#include "support/broken_raw.h"
#include "support/file_bytes.h"
#include "support/raw_previews.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

constexpr int kCycles = 2000;
constexpr int kReport = 200;         // cycles
constexpr double kMaxGrowth = 1.05;  // from the first report to the last

// In kilobytes.
long ResidentSize() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    long kilobytes = 0;
    if (word == "VmRSS:" && status >> kilobytes) return kilobytes;
  }
  throw std::runtime_error("no resident size in /proc/self/status");
}

cv::Mat Picture() {
  cv::Mat picture(200, 320, CV_8UC3);
  cv::RNG(1).fill(picture, cv::RNG::UNIFORM, 0, 256);
  return picture;
}

std::vector<std::string> WritePhotographs(const TempDir& folder) {
  const cv::Mat picture = Picture();
  std::vector<std::string> paths = {LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg",
                                    folder.File("missing.arw")};
  for (const char* extension : {".jpg", ".png", ".tif", ".bmp", ".webp"}) {
    paths.push_back(folder.File(std::string("ordinary") + extension));
    cv::imwrite(paths.back(), picture);
  }
  for (const RawFormat format : {RawFormat::kArwCompressed, RawFormat::kArwUncompressed, RawFormat::kDng}) {
    RawOptions options;
    options.format = format;
    const std::string name = std::to_string(static_cast<int>(format)) + ".arw";
    paths.push_back(WriteBytes(folder.File(name), MakeRawFile(picture, options)));
  }
  paths.push_back(WriteBytes(folder.File("bitmap.dng"), MakeBitmapPreviewRaw(picture)));
  paths.push_back(WriteBytes(folder.File("truncated.arw"), MakeTruncatedRaw(RawFormat::kDng)));
  paths.push_back(WriteBytes(folder.File("undecodable.dng"), MakeUndecodableRaw()));
  paths.push_back(WriteBytes(folder.File("unsupported.arw"), MakeUnsupportedFile()));
  paths.push_back(WriteBytes(folder.File("broken.png"), {1, 2, 3}));
  return paths;
}

void Edit(EngineContext* context, int cycle) {
  lumvik_set_exposure(context, static_cast<float>(cycle % 5) / 4.0F);
  lumvik_set_clarity(context, static_cast<float>(cycle % 7) * 10.0F);
  lumvik_set_nr_luminance(context, static_cast<float>(cycle % 3) * 30.0F);
  lumvik_set_rotation(context, static_cast<float>(cycle % 4));
  const float curve[] = {0, 0, 0.5F, 0.6F, 1, 1};
  lumvik_set_tone_curve(context, cycle % 4, curve, 3);
}

void PassThrough(const std::string& photograph, int cycle, const TempDir& folder) {
  EngineContext* context = lumvik_create_context();
  if (lumvik_load_arw(context, photograph.c_str(), cycle % 4 + 1) == LUMVIK_OK) {
    Edit(context, cycle);
    if (cycle % 10 == 0) lumvik_segment_subject(context, 0.5F, 0.5F);
    const auto pixels =
        static_cast<size_t>(lumvik_get_width(context)) * static_cast<size_t>(lumvik_get_height(context));
    std::vector<uint8_t> preview(4 * pixels);
    lumvik_get_preview(context, preview.data(), static_cast<int>(preview.size()));
    float slots[LUMVIK_ENHANCE_SLOTS];
    lumvik_auto_enhance(context, slots);
    lumvik_export_jpeg(context, folder.File("out.jpg").c_str(), 90, 0, 1);
    lumvik_export_png(context, folder.File("out.png").c_str(), cycle % 2 == 0 ? 16 : 8);
    lumvik_export_tiff(context, folder.File("out.tif").c_str());
  }
  uint8_t* thumbnail = nullptr;
  int size = 0;
  lumvik_extract_thumbnail(photograph.c_str(), &thumbnail, &size);
  lumvik_free_thumb(thumbnail);
  uint64_t hash = 0;
  lumvik_phash(photograph.c_str(), &hash);
  lumvik_destroy_context(context);
}

int Soak(int cycles) {
  const TempDir folder;
  const std::vector<std::string> photographs = WritePhotographs(folder);
  long first = 0;
  long last = 0;
  for (int cycle = 1; cycle <= cycles; ++cycle) {
    PassThrough(photographs[static_cast<size_t>(cycle) % photographs.size()], cycle, folder);
    if (cycle % kReport != 0) continue;
    last = ResidentSize();
    if (first == 0) first = last;
    std::cout << cycle << " cycles: " << last << " kB" << std::endl;
  }
  return static_cast<double>(last) <= static_cast<double>(first) * kMaxGrowth ? EXIT_SUCCESS : EXIT_FAILURE;
}

}  // namespace
}  // namespace lumvik::test

int main(int argc, char** argv) {
  return lumvik::test::Soak(argc > 1 ? std::atoi(argv[1]) : lumvik::test::kCycles);
}
