#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <optional>
#include <string>

#include "batch/free_memory.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kUnknown = std::numeric_limits<std::uint64_t>::max();

// The number after `key` in a file of lines "key number ...".
std::optional<std::uint64_t> NumberIn(const fs::path& file, const std::string& key) {
  std::ifstream stream(file);
  std::string line;
  while (std::getline(stream, line)) {
    if (line.compare(0, key.size(), key) == 0) return std::strtoull(line.c_str() + key.size(), nullptr, 10);
  }
  return std::nullopt;
}

// The number in a file with nothing else; none for "max".
std::optional<std::uint64_t> NumberOf(const fs::path& file) {
  std::uint64_t number = 0;
  if (std::ifstream(file) >> number) return number;
  return std::nullopt;
}

// What remains below the limit of a control group, such as a container's. It counts page cache as used, but
// inactive pages are reclaimed on demand.
std::uint64_t LeftIn(const fs::path& group) {
  const auto limit = NumberOf(group / "memory.max");
  const auto used = NumberOf(group / "memory.current");
  if (!limit || !used) return kUnknown;
  const std::uint64_t reclaimable =
      std::min(*used, NumberIn(group / "memory.stat", "inactive_file ").value_or(0));
  return *limit - std::min(*limit, *used - reclaimable);
}

// The limits of enclosing groups apply too.
std::uint64_t LeftInGroups(const fs::path& root) {
  const fs::path groups = root / "sys/fs/cgroup";
  std::ifstream stream(root / "proc/self/cgroup");
  std::string line;
  std::uint64_t left = kUnknown;
  while (std::getline(stream, line)) {
    if (line.compare(0, 3, "0::") != 0) continue;
    fs::path group = line.substr(3);
    for (; group.has_relative_path(); group = group.parent_path()) {
      left = std::min(left, LeftIn(groups / group.relative_path()));
    }
    left = std::min(left, LeftIn(groups));
  }
  return left;
}

}  // namespace

std::uint64_t FreeMemory(const fs::path& root) {
  const auto kibibytes = NumberIn(root / "proc/meminfo", "MemAvailable:");
  return std::min(kibibytes ? *kibibytes * 1024 : kUnknown, LeftInGroups(root));
}

}  // namespace lumvik
