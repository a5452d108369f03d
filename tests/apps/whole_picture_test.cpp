// By what a picture is known to be cut off.
#include "lumvik/whole_picture.h"

#include <filesystem>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

class WholePictureTest : public CommandTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(WholePictureTest, OneThatIsCutOffAnywhereIsNotWhole) {
  const std::string path = Path(std::string("out.") + GetParam());
  const OutputFormat format = *OutputFormatOf(path);
  ASSERT_EQ(Develop(Photograph("in.png"), path).status, kSuccess);
  EXPECT_TRUE(IsWholePicture(path, format));
  for (std::uintmax_t size = fs::file_size(path) - 1; size > 0; size -= size > 2000 ? 1000 : 1) {
    fs::resize_file(path, size);
    ASSERT_FALSE(IsWholePicture(path, format)) << size;
  }
  fs::resize_file(path, 0);
  EXPECT_FALSE(IsWholePicture(path, format));
  fs::resize_file(path, 5000);  // zeros
  EXPECT_FALSE(IsWholePicture(path, format));
  fs::remove(path);
  EXPECT_FALSE(IsWholePicture(path, format));
}

INSTANTIATE_TEST_SUITE_P(Formats, WholePictureTest, ::testing::Values("jpg", "png", "tif"),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
}  // namespace lumvik::test
