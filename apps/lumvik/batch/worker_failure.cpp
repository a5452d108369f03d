#include "batch/worker_failure.h"

#include <sstream>

namespace lumvik {
namespace {

constexpr char kMessageStart[] = "lumvik: ";

}  // namespace

std::string FailureOf(const WorkerEnd& end, const std::string& input, std::chrono::seconds time_limit) {
  const std::string failure = "cannot develop '" + input + "': ";
  if (end.is_overdue) {
    return failure + "it took longer than " + std::to_string(time_limit.count()) +
           " s and was stopped; --time-limit raises the limit";
  }
  if (!end.signal.empty()) return failure + "its process was killed by " + end.signal;
  std::istringstream lines(end.err);
  std::string last;
  // Libraries may have printed other lines.
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(kMessageStart, 0) == 0) return line.substr(sizeof kMessageStart - 1);
    if (!line.empty()) last = line;
  }
  return failure + (last.empty() ? "its process exited with status " + std::to_string(end.status) : last);
}

}  // namespace lumvik
