// Settings files and sidecars.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "lumvik_host.h"
#include "settings/settings_object.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

namespace fs = std::filesystem;

class SettingsFileTest : public ::testing::Test {
 protected:
  void TearDown() override {
    for (const auto& entry : fs::directory_iterator(folder_.path())) {
      EXPECT_NE(entry.path().filename().u8string().rfind(".lumvik-", 0), 0U) << entry.path();
    }
  }

  std::string Path(const std::string& name) const { return folder_.File(name); }

  std::string Written(const std::string& name, const std::string& text) const {
    std::ofstream(fs::u8path(Path(name)), std::ios::binary) << text;
    return Path(name);
  }

  std::string Content(const std::string& name) const {
    std::ifstream file(fs::u8path(Path(name)), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }

  static lumvik_host_status Read(const std::string& path) {
    lumvik_host_settings* settings = nullptr;
    const lumvik_host_status status = lumvik_host_settings_read(path.c_str(), &settings);
    EXPECT_EQ(settings == nullptr, status != LUMVIK_HOST_OK);
    lumvik_host_settings_close(settings);
    return status;
  }

  std::string Sidecar(const std::string& photograph, const char* extension = ".lumvik.json") const {
    char* sidecar = nullptr;
    EXPECT_EQ(lumvik_host_find_sidecar(Path(photograph).c_str(), extension, &sidecar), LUMVIK_HOST_OK);
    return sidecar == nullptr ? "" : fs::u8path(Released(sidecar)).filename().u8string();
  }

  const lumvik::test::TempDir folder_;
};

TEST_F(SettingsFileTest, AWrittenFileIsReadBack) {
  const SettingsObject settings = SettingsObject::From(R"({"lumvik": 2, "exposure": 0.1, "flip_v": true})");
  const std::string path = Path("größe 100 %.json");
  ASSERT_EQ(lumvik_host_settings_write(settings.Handle(), path.c_str(), 0), LUMVIK_HOST_OK);
  EXPECT_EQ(Content("größe 100 %.json"), settings.Text());
  lumvik_host_settings* handle = nullptr;
  ASSERT_EQ(lumvik_host_settings_read(path.c_str(), &handle), LUMVIK_HOST_OK) << lumvik_host_last_error();
  EXPECT_EQ(SettingsObject(handle).Text(), settings.Text());
}

TEST_F(SettingsFileTest, AnExistingFileIsReplacedOnRequest) {
  const std::string path = Written("old.json", "last year's work");
  const SettingsObject settings;
  ExpectFailure(lumvik_host_settings_write(settings.Handle(), path.c_str(), 0), LUMVIK_HOST_EXISTS,
                "cannot write '" + path + "': the file exists");
  EXPECT_EQ(Content("old.json"), "last year's work");
  ASSERT_EQ(lumvik_host_settings_write(settings.Handle(), path.c_str(), 1), LUMVIK_HOST_OK);
  EXPECT_EQ(Content("old.json"), settings.Text());
}

TEST_F(SettingsFileTest, UnwritableFilesAreRefused) {
  const SettingsObject settings;
  ExpectFailure(lumvik_host_settings_write(settings.Handle(), Path("none/s.json").c_str(), 1),
                LUMVIK_HOST_NOT_FOUND, "there is no folder '" + Path("none") + "'");
}

TEST_F(SettingsFileTest, ErrorsNameFileLineAndKey) {
  const std::string path = Written("bad.json", "{\"lumvik\": 2,\n\"tint\": 151}");
  ExpectFailure(Read(path), LUMVIK_HOST_INVALID_ARGUMENT,
                "cannot use the settings '" + path + "': line 2: tint: 151 is not a number in -150..150");
}

TEST_F(SettingsFileTest, FilesWithoutSettingsAreRefused) {
  fs::create_directory(Path("folder"));
  ExpectFailure(Read(Path("none.json")), LUMVIK_HOST_NOT_FOUND,
                "cannot read '" + Path("none.json") + "': there is no such file");
  ExpectFailure(Read(""), LUMVIK_HOST_NOT_FOUND, "there is no such file");
  ExpectFailure(Read(Path("folder")), LUMVIK_HOST_INVALID_ARGUMENT, "it is a folder");
  ExpectFailure(Read(Written("large.json", std::string(300000, ' '))), LUMVIK_HOST_INVALID_ARGUMENT,
                "the file is too large");
}

TEST_F(SettingsFileTest, TheMostSpecificSidecarIsFound) {
  EXPECT_EQ(Sidecar("IMG.ARW"), "");
  Written("IMG.xmp", "");
  Written("IMG.ARW.lumvik", "");
  EXPECT_EQ(Sidecar("IMG.ARW"), "");
  Written("IMG.lumvik.json", "");
  EXPECT_EQ(Sidecar("IMG.ARW"), "IMG.lumvik.json");
  EXPECT_EQ(Sidecar("IMG.JPG"), "IMG.lumvik.json");
  EXPECT_EQ(Sidecar("IMG"), "IMG.lumvik.json");
  Written("IMG.ARW.lumvik.json", "");
  EXPECT_EQ(Sidecar("IMG.ARW"), "IMG.ARW.lumvik.json");
  EXPECT_EQ(Sidecar("IMG.JPG"), "IMG.lumvik.json");
  EXPECT_EQ(Sidecar("IMG.ARW", ".xmp"), "IMG.xmp");
}

TEST_F(SettingsFileTest, ASidecarInAnotherCaseIsNotFound) {
  Written("IMG.xmp", "");
  EXPECT_EQ(Sidecar("IMG.ARW", ".XMP"), "");
}

TEST_F(SettingsFileTest, ASidecarIsNextToItsPhotograph) {
  fs::create_directory(Path("folder.x"));
  Written("folder.x/IMG.lumvik.json", "");
  EXPECT_EQ(Sidecar("IMG.ARW"), "");
  char* sidecar = nullptr;
  ASSERT_EQ(lumvik_host_find_sidecar(Path("folder.x/IMG.ARW").c_str(), ".lumvik.json", &sidecar),
            LUMVIK_HOST_OK);
  EXPECT_EQ(Released(sidecar), Path("folder.x/IMG.lumvik.json"));
}

#if !defined(_WIN32)
TEST_F(SettingsFileTest, ABrokenLinkIsASidecar) {
  fs::create_symlink("gone.json", Path("IMG.lumvik.json"));
  EXPECT_EQ(Sidecar("IMG.ARW"), "IMG.lumvik.json");
}
#endif

}  // namespace
}  // namespace lumvik::host::test
