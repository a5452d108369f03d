#include "batch/memory.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <sstream>
#include <system_error>

#include "batch/isolated_reading.h"
#include "commands/image_sizes.h"
#include "files/photograph_walk.h"

namespace lumvik {
namespace {

// Measured: an idle process takes 55 MB; decoding takes up to 21 bytes per pixel of a RAW file and 6 of an
// ordinary image; all stages together take up to 62 bytes per pixel of the image reduced to its longest side.
constexpr std::uint64_t kProcessBytes = std::uint64_t{64} << 20;
struct Kind {
  std::uint64_t decoding_bytes;
  std::uint64_t longest_side;
};
constexpr Kind kOrdinaryImage = {10, 4096};  // includes the coefficients of a progressive JPEG
constexpr Kind kRawFile = {24, 2000};
constexpr std::uint64_t kDevelopingBytes = 64;

constexpr std::uint64_t kMaxSide = 65535;  // supported by any decoder
constexpr double kMaxPixelsPerByte = 2;    // of a RAW file with an unknown header

std::uint64_t MemoryWithoutHeader(const std::string& path) {
  std::error_code error;
  const std::uintmax_t bytes = std::filesystem::file_size(path, error);
  const auto side =
      static_cast<std::uint64_t>(std::sqrt(error ? 0 : kMaxPixelsPerByte * static_cast<double>(bytes)));
  return MemoryToDevelop(side, side, IsOrdinaryImageName(path));
}

// `line` is what the command that reads image sizes printed.
std::uint64_t Estimate(const std::string& path, const std::optional<std::string>& line) {
  std::istringstream size(line.value_or(""));
  std::uint64_t width = 0;
  std::uint64_t height = 0;
  if (!(size >> width >> height) || width == 0 || height == 0) return MemoryWithoutHeader(path);
  return MemoryToDevelop(width, height, IsOrdinaryImageName(path));
}

}  // namespace

std::uint64_t MemoryToDevelop(std::uint64_t width, std::uint64_t height, bool is_ordinary_image) {
  const Kind& kind = is_ordinary_image ? kOrdinaryImage : kRawFile;
  const std::uint64_t pixels = std::min(width, kMaxSide) * std::min(height, kMaxSide);
  const double scale = std::min(1.0, static_cast<double>(kind.longest_side) /
                                         static_cast<double>(std::max({width, height, std::uint64_t{1}})));
  const double developed_pixels = static_cast<double>(pixels) * scale * scale;
  return kProcessBytes + std::max(kind.decoding_bytes * pixels,
                                  kDevelopingBytes * static_cast<std::uint64_t>(developed_pixels));
}

std::vector<std::uint64_t> EstimateMemory(const std::vector<std::string>& photographs) {
  const std::vector<std::optional<std::string>> sizes = ReadIsolated(kImageSizesCommand, photographs);
  std::vector<std::uint64_t> estimates(photographs.size());
  std::transform(photographs.begin(), photographs.end(), sizes.begin(), estimates.begin(), Estimate);
  return estimates;
}

unsigned WorkersThatFit(std::vector<std::uint64_t> estimates, unsigned wanted, std::uint64_t free) {
  std::sort(estimates.begin(), estimates.end(), std::greater<>());
  unsigned workers = 0;
  std::uint64_t taken = 0;
  while (workers < std::min<std::size_t>(wanted, estimates.size()) && estimates[workers] <= free - taken) {
    taken += estimates[workers++];
  }
  return std::max(workers, 1U);
}

}  // namespace lumvik
