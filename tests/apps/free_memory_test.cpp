// Free memory, read from a fake /proc and /sys.
#include "batch/free_memory.h"

#include <limits>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

constexpr std::uint64_t kMebibyte = 1 << 20;

class FreeMemoryTest : public CommandTest {
 protected:
  void Write(const std::string& file, const std::string& text) const {
    fs::create_directories(fs::path(Path(file)).parent_path());
    WriteFile(Path(file), text);
  }

  void WriteMeminfo(std::uint64_t available_mebibytes) const {
    Write("proc/meminfo", "MemTotal:       65536000 kB\nMemFree:           10240 kB\nMemAvailable:   " +
                              std::to_string(available_mebibytes * 1024) +
                              " kB\nCached:         32768000 kB\n");
  }

  // A control group that uses 700 MiB, 300 of them for files, of which 200 are inactive.
  void WriteGroup(const std::string& path, const std::string& limit) const {
    const std::string group = "sys/fs/cgroup" + path + "/";
    Write(group + "memory.max", limit + "\n");
    Write(group + "memory.current", std::to_string(700 * kMebibyte) + "\n");
    Write(group + "memory.stat", "anon " + std::to_string(400 * kMebibyte) + "\nfile " +
                                     std::to_string(300 * kMebibyte) + "\ninactive_file " +
                                     std::to_string(200 * kMebibyte) + "\nactive_file " +
                                     std::to_string(100 * kMebibyte) + "\n");
  }

  std::uint64_t Free() const { return FreeMemory(Path("")); }
};

TEST_F(FreeMemoryTest, IsTheAvailableMemory) {
  WriteMeminfo(5000);
  EXPECT_EQ(Free(), 5000 * kMebibyte);
}

TEST_F(FreeMemoryTest, IsUnlimitedWhenUnknown) {
  EXPECT_EQ(Free(), std::numeric_limits<std::uint64_t>::max());
}

TEST_F(FreeMemoryTest, CountsInactivePageCacheOfAGroupAsFree) {
  WriteMeminfo(5000);
  Write("proc/self/cgroup", "0::/batch\n");
  WriteGroup("/batch", std::to_string(1000 * kMebibyte));
  EXPECT_EQ(Free(), 500 * kMebibyte);
}

TEST_F(FreeMemoryTest, IsTheMinimumOfSystemAndGroup) {
  WriteMeminfo(300);
  Write("proc/self/cgroup", "0::/batch\n");
  WriteGroup("/batch", std::to_string(1000 * kMebibyte));
  EXPECT_EQ(Free(), 300 * kMebibyte);
}

TEST_F(FreeMemoryTest, HonorsTheLimitsOfEnclosingGroups) {
  WriteMeminfo(5000);
  Write("proc/self/cgroup", "1:name=systemd:/elsewhere\n0::/user/batch\n");
  WriteGroup("/user/batch", "max");
  WriteGroup("/user", std::to_string(900 * kMebibyte));
  EXPECT_EQ(Free(), 400 * kMebibyte);
  WriteGroup("", std::to_string(800 * kMebibyte));
  EXPECT_EQ(Free(), 300 * kMebibyte);
}

TEST_F(FreeMemoryTest, IsZeroAboveTheLimit) {
  WriteMeminfo(5000);
  Write("proc/self/cgroup", "0::/batch\n");
  WriteGroup("/batch", std::to_string(100 * kMebibyte));
  EXPECT_EQ(Free(), 0U);
}

}  // namespace
}  // namespace lumvik::test
