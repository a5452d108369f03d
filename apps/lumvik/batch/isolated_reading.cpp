#include "batch/isolated_reading.h"

#include <algorithm>
#include <chrono>
#include <cstddef>

#include "batch/worker_process.h"

namespace lumvik {
namespace {

constexpr std::size_t kFilesAtOnce = 64;
constexpr std::chrono::seconds kReadingLimit(60);  // for all of them

// Appends the lines of `output`, without one that is incomplete.
void AppendLines(const std::string& output, std::size_t max, std::vector<std::optional<std::string>>& lines) {
  std::size_t start = 0;
  for (std::size_t count = 0; count < max; ++count) {
    const std::size_t end = output.find('\n', start);
    if (end == std::string::npos) return;
    lines.emplace_back(output.substr(start, end - start));
    start = end + 1;
  }
}

}  // namespace

std::vector<std::optional<std::string>> ReadIsolated(const std::string& command,
                                                     const std::vector<std::string>& files) {
  std::vector<std::optional<std::string>> lines;
  Workers workers(1, kReadingLimit);
  while (lines.size() < files.size()) {
    const std::size_t wanted = std::min(kFilesAtOnce, files.size() - lines.size());
    const auto first = files.begin() + static_cast<std::ptrdiff_t>(lines.size());
    std::vector<std::string> arguments = {command, "--"};
    arguments.insert(arguments.end(), first, first + static_cast<std::ptrdiff_t>(wanted));
    const std::size_t before = lines.size();
    workers.Start(0, arguments);
    AppendLines(workers.Wait().out, wanted, lines);
    if (lines.size() < before + wanted) lines.emplace_back();  // the next file crashed the reader
  }
  return lines;
}

}  // namespace lumvik
