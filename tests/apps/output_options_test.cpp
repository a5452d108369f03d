// --copyright and --keep-times.
#if !defined(_WIN32)
#include <fcntl.h>
#include <sys/stat.h>
#endif

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
                "--copyright excludes --no-exif");
  EXPECT_FALSE(fs::exists(Path("out.jpg")));
}

#if !defined(_WIN32)
TEST_F(OutputOptionsTest, TheTimeOfAccessIsKept) {
  const std::string in = Photograph("in.png");
  const timespec times[] = {{1000000, 5}, {2000000, 6}};  // accessed, modified
  ASSERT_EQ(utimensat(AT_FDCWD, in.c_str(), times, 0), 0);
  ASSERT_EQ(Develop(in, Path("kept.jpg"), {"--keep-times"}).status, kSuccess);
  struct stat status = {};
  ASSERT_EQ(stat(Path("kept.jpg").c_str(), &status), 0);
  EXPECT_EQ(status.st_atim.tv_sec, 1000000) << "before the command read it";
  EXPECT_EQ(status.st_mtim.tv_sec, 2000000);
}
#endif

TEST_F(OutputOptionsTest, TheTimesOfThePhotographAreKept) {
  const std::string in = Photograph("in.png");
  fs::last_write_time(in, fs::file_time_type::clock::now() - std::chrono::hours(1000));
  const fs::file_time_type shot = fs::last_write_time(in);  // as precise as the system is
  ASSERT_EQ(Develop(in, Path("new.jpg")).status, kSuccess);
  EXPECT_NE(fs::last_write_time(Path("new.jpg")), shot);
  ASSERT_EQ(Develop(in, Path("kept.jpg"), {"--keep-times"}).status, kSuccess);
  EXPECT_EQ(fs::last_write_time(Path("kept.jpg")), shot);
}

}  // namespace
}  // namespace lumvik::test
