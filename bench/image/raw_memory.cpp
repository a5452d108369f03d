// Prints the peak memory of loading a RAW file, in megabytes: how far the process grew, how much of that is
// the image, how large the file is, and what remains without both.
//
//   lumvik_raw_memory FILE QUALITY
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

#include "lumvik.h"

namespace lumvik::bench {
namespace {

constexpr double kMegabyte = 1e6;

// A value of /proc/self/status, in megabytes.
double MemoryStatus(const std::string& name) {
  constexpr double kKibibyte = 1024;
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    double value = 0;
    if (word == name + ":" && status >> value) return value * kKibibyte / kMegabyte;
  }
  throw std::runtime_error("no " + name + " in /proc/self/status");
}

void PrintLoad(const std::string& path, int quality) {
  EngineContext* context = lumvik_create_context();
  const double before = MemoryStatus("VmRSS");
  if (lumvik_load_arw(context, path.c_str(), quality) != LUMVIK_OK)
    throw std::runtime_error(lumvik_last_error(context));
  const double peak = MemoryStatus("VmHWM") - before;
  const double pixels = static_cast<double>(lumvik_get_width(context)) * lumvik_get_height(context);
  const double image = pixels * 4 * sizeof(uint16_t) / kMegabyte;
  const double file = static_cast<double>(std::filesystem::file_size(path)) / kMegabyte;
  std::cout.precision(1);
  std::cout << std::fixed << "quality " << quality << ": peak " << peak << ", image " << image << ", file "
            << file << ", rest " << peak - image - file << "\n";
  lumvik_destroy_context(context);
}

}  // namespace
}  // namespace lumvik::bench

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: lumvik_raw_memory FILE QUALITY\n";
    return EXIT_FAILURE;
  }
  lumvik::bench::PrintLoad(argv[1], std::atoi(argv[2]));
  return EXIT_SUCCESS;
}
