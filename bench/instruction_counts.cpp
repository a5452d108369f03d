// Does a few pieces of the engine's work on one thread under callgrind, which counts their instructions:
// scripts/check-speed.sh. Each piece runs once uncounted, so that tables made once are not counted.
//
//   lumvik_instruction_counts --versions   print what the counts depend on besides the engine
//   lumvik_instruction_counts SET          run with the instruction set `avx2` or `baseline`; fails where the
//   processor
//                                          lacks it
#include <gnu/libc-version.h>
#include <libraw/libraw.h>
#include <valgrind/callgrind.h>

#include <cstdlib>
#include <functional>
#include <iostream>
#include <opencv2/core/utility.hpp>
#include <opencv2/core/version.hpp>
#include <opencv2/imgproc.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/vectorized.h"
#include "image/raw_decoder.h"
#include "pipeline/develop_pipeline.h"
#include "support/file_bytes.h"
#include "support/random_adjustments.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::bench {
namespace {

struct Work {
  std::string name;
  std::function<void()> run;
};

Work Decode(const std::string& name, const test::TempDir& folder, cv::Size size, test::RawFormat format,
            int quality) {
  cv::Mat rgb;
  cv::cvtColor(test::ResizedPhotograph("cat.jpg", size), rgb, cv::COLOR_RGBA2RGB);
  test::RawOptions options;
  options.format = format;
  const std::string path = test::WriteBytes(folder.File(name), test::MakeRawFile(rgb, options));
  return {name, [=] {
            DecodedImage decoded;
            if (!DecodeRaw(path, quality, decoded)) throw std::runtime_error(decoded.error);
          }};
}

Work Render(const std::string& name, void (*set)(Adjustments&)) {
  const cv::Mat source = test::ResizedPhotograph("cat.jpg", cv::Size(300, 200));
  Adjustments adjustments;
  set(adjustments);
  return {name, [=, rendered = cv::Mat()]() mutable { DevelopPipeline(source, adjustments, rendered); }};
}

std::vector<Work> AllWork(const test::TempDir& folder) {
  const cv::Size wide(4096, 96);  // is reduced to 2000 columns
  const cv::Size small(600, 400);
  using test::RawFormat;
  return {Decode("decode-arw-full", folder, wide, RawFormat::kArwCompressed, kRawFull),
          Decode("decode-arw-half", folder, wide, RawFormat::kArwCompressed, kRawHalf),
          Decode("decode-arw-quarter", folder, wide, RawFormat::kArwCompressed, kRawQuarter),
          Decode("decode-dng-full", folder, small, RawFormat::kDng, kRawFull),
          Render("render-default", [](Adjustments&) {}),
          Render("render-typical", test::SetTypical),
          Render("render-everything", test::SetEverything),
          Render("render-flip", [](Adjustments& a) { a.flip_h = 1; }),
          Render("render-rotation", [](Adjustments& a) { a.rotation = 2; }),
          Render("render-distortion", [](Adjustments& a) { a.distortion = 20; }),
          Render("render-aberration", [](Adjustments& a) { a.ca_correction = 30; }),
          Render("render-dehaze", [](Adjustments& a) { a.dehaze = 40; }),
          Render("render-grain", [](Adjustments& a) { a.grain_amount = 30; })};
}

void Count(const Work& work) {
  work.run();
  CALLGRIND_START_INSTRUMENTATION;
  CALLGRIND_ZERO_STATS;
  work.run();
  CALLGRIND_STOP_INSTRUMENTATION;
  CALLGRIND_DUMP_STATS_AT(work.name.c_str());
}

void PrintVersions() {
  std::cout << "compiler " << __VERSION__ << ", OpenCV " << CV_VERSION << ", LibRaw " << LibRaw::version()
            << ", glibc " << gnu_get_libc_version() << "\n";
}

void CountAll(InstructionSet set) {
  widest_instruction_set = set;
  if (BestInstructionSet() != set) throw std::runtime_error("the processor lacks this instruction set");
  cv::setNumThreads(1);
  const test::TempDir folder;
  for (const Work& work : AllWork(folder)) Count(work);
}

}  // namespace
}  // namespace lumvik::bench

int main(int argc, char** argv) {
  using namespace lumvik;
  const std::string argument = argc == 2 ? argv[1] : "";
  if (argument == "--versions") {
    bench::PrintVersions();
  } else if (argument == "avx2" || argument == "baseline") {
    bench::CountAll(argument == "avx2" ? InstructionSet::kAvx2 : InstructionSet::kBaseline);
  } else {
    std::cerr << "usage: lumvik_instruction_counts --versions | avx2 | baseline\n";
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
