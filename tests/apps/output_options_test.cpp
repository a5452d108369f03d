// --copyright and --keep-times.
#include <chrono>
#include <filesystem>

#include "command_test.h"
#include "exif_file.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;

using OutputOptionsTest = CommandTest;

TEST_F(OutputOptionsTest, TheCopyrightIsSet) {
  for (const char* name : {"out.jpg", "out.png", "out.tif"}) {
    Developed(Photograph("in.jpg"), Path(name), {"--copyright", "2026 Ada, all rights"});
    EXPECT_EQ(TagValue(ReadExif(Path(name)), "Exif.Image.Copyright"), "2026 Ada, all rights") << name;
  }
}

TEST_F(OutputOptionsTest, ACopyrightNeedsMetadata) {
  ExpectRefusal(Develop(Photograph("in.jpg"), Path("out.jpg"), {"--copyright", "Ada", "--no-exif"}), kUsage,
                "--copyright");
  EXPECT_FALSE(fs::exists(Path("out.jpg")));
}

TEST_F(OutputOptionsTest, TheTimesOfThePhotographAreKept) {
  const std::string in = Photograph("in.png");
  const fs::file_time_type shot = fs::file_time_type::clock::now() - std::chrono::hours(1000);
  fs::last_write_time(in, shot);
  ASSERT_EQ(Develop(in, Path("new.jpg")).status, kSuccess);
  EXPECT_NE(fs::last_write_time(Path("new.jpg")), shot);
  ASSERT_EQ(Develop(in, Path("kept.jpg"), {"--keep-times"}).status, kSuccess);
  EXPECT_EQ(fs::last_write_time(Path("kept.jpg")), shot);
}

}  // namespace
}  // namespace lumvik::test
