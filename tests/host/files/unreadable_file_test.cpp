// Files that cannot be read: every function states what is the matter with which file.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "lumvik_host.h"
#include "photo/test_photos.h"
#include "support/broken_raw.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::TempDir;
using lumvik::test::WriteBytes;
using ::testing::HasSubstr;

struct ReadingFunction {
  const char* name;
  lumvik_host_status (*call)(const char* path);
};

const ReadingFunction kReadingFunctions[] = {
    {"open",
     [](const char* path) {
       lumvik_host_photo* photo = nullptr;
       return lumvik_host_open(path, nullptr, &photo);
     }},
    {"check_file",
     [](const char* path) {
       lumvik_host_integrity integrity{};
       integrity.struct_size = sizeof(integrity);
       return lumvik_host_check_file(path, &integrity);
     }},
    {"identify",
     [](const char* path) {
       std::int32_t format = 0;
       return lumvik_host_identify(path, &format);
     }},
    {"read_size",
     [](const char* path) {
       std::int32_t width = 0;
       std::int32_t height = 0;
       return lumvik_host_read_size(path, &width, &height);
     }},
    {"read_exif",
     [](const char* path) {
       lumvik_host_exif exif{};
       exif.struct_size = sizeof(exif);
       return lumvik_host_read_exif(path, &exif);
     }},
    {"hash",
     [](const char* path) {
       std::uint64_t hash = 0;
       return lumvik_host_hash(path, &hash);
     }},
    {"extract_thumbnail",
     [](const char* path) {
       std::uint8_t* data = nullptr;
       std::size_t size = 0;
       return lumvik_host_extract_thumbnail(path, nullptr, &data, &size, nullptr, nullptr);
     }},
    {"import_xmp",
     [](const char* path) {
       lumvik_host_settings* settings = nullptr;
       return lumvik_host_settings_import_xmp(path, &settings, nullptr);
     }},
    {"settings_read",
     [](const char* path) {
       lumvik_host_settings* settings = nullptr;
       return lumvik_host_settings_read(path, &settings);
     }},
};

class UnreadableFileTest : public ::testing::Test {
 protected:
  static void ExpectEach(const std::string& path, lumvik_host_status status, const std::string& text) {
    for (const ReadingFunction& function : kReadingFunctions) {
      const bool is_settings = function.name == std::string("settings_read");
      const bool is_no_photograph = status == LUMVIK_HOST_NOT_A_PHOTOGRAPH && is_settings;
      EXPECT_EQ(function.call(path.c_str()), is_no_photograph ? LUMVIK_HOST_INVALID_ARGUMENT : status)
          << function.name;
      EXPECT_EQ(lumvik_host_last_error(), text) << function.name;
    }
  }

  std::string File(const std::string& name) const { return folder_.File(name); }

 private:
  TempDir folder_;
};

TEST_F(UnreadableFileTest, EmptyFilesAreReportedAsSuch) {
  for (const char* name : {"a.jpg", "a.ARW", "a.xmp", "a.json", "a"}) {
    const std::string path = WriteBytes(File(name), {});
    ExpectEach(path, LUMVIK_HOST_NOT_A_PHOTOGRAPH, "'" + path + "' is empty");
  }
}

TEST_F(UnreadableFileTest, FoldersAreReportedAsSuch) {
  for (const char* name : {"a.jpg", "a.ARW", "a.xmp", "a.json"}) {
    std::filesystem::create_directory(File(name));
    ExpectEach(File(name), LUMVIK_HOST_INVALID_ARGUMENT, "cannot read '" + File(name) + "': it is a folder");
  }
}

TEST_F(UnreadableFileTest, MissingFilesAreReportedAsSuch) {
  for (const char* name : {"a.jpg", "none/a.ARW", "a.xmp", "a.json"}) {
    ExpectEach(File(name), LUMVIK_HOST_NOT_FOUND, "cannot read '" + File(name) + "': there is no such file");
  }
}

TEST_F(UnreadableFileTest, AFileThatIsGoneIsNotDamaged) {
  const Bytes raw = PhotoBytes(LUMVIK_HOST_FORMAT_RAW);
  const PhotoHandle photo = OpenForTest(WriteBytes(File("a.dng"), raw));
  std::filesystem::remove(File("a.dng"));
  EXPECT_EQ(lumvik_host_set_quality(photo.get(), 4), LUMVIK_HOST_NOT_FOUND);
  EXPECT_EQ(lumvik_host_last_error(),
            "cannot read '" + std::filesystem::absolute(File("a.dng")).string() + "': there is no such file");
}

TEST_F(UnreadableFileTest, ACutRawFileIsNotAFailureOfTheDisk) {
  const auto raw = lumvik::test::MakeTruncatedRaw(lumvik::test::RawFormat::kDng);
  const std::string path = WriteBytes(File("a.dng"), raw);
  lumvik_host_photo* photo = nullptr;
  EXPECT_EQ(lumvik_host_open(path.c_str(), nullptr, &photo), LUMVIK_HOST_DAMAGED);
  EXPECT_EQ(lumvik_host_last_error(), "cannot open '" + path + "': its data is truncated or corrupt");
}

}  // namespace
}  // namespace lumvik::host::test
