#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "base/large_image.h"

namespace lumvik {
namespace {

// Whether the memory at an address was advised to be in huge pages.
bool IsHugePageAdvised(const void* address) {
  std::ifstream mappings("/proc/self/smaps");
  bool inside = false;
  for (std::string line; std::getline(mappings, line);) {
    uintptr_t begin = 0;
    uintptr_t end = 0;
    char dash = '\0';
    if (std::istringstream(line) >> std::hex >> begin >> dash >> end && dash == '-') {
      const auto position = reinterpret_cast<uintptr_t>(address);
      inside = begin <= position && position < end;
    } else if (inside && line.rfind("VmFlags:", 0) == 0) {
      return line.find(" hg") != std::string::npos;
    }
  }
  return false;
}

TEST(LargeImage, IsInHugePages) {
  if (!std::filesystem::exists("/sys/kernel/mm/transparent_hugepage")) GTEST_SKIP() << "no huge pages here";
  const cv::Mat image = LargeImage({4000, 1000}, CV_32FC4);
  EXPECT_TRUE(IsHugePageAdvised(image.ptr(0) + image.total() * image.elemSize() / 2));
}

}  // namespace
}  // namespace lumvik
