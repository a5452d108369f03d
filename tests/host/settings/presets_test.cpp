// Presets in a folder.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "lumvik_host.h"
#include "settings/settings_object.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

namespace fs = std::filesystem;

class PresetsTest : public ::testing::Test {
 protected:
  std::string Folder() const { return folder_.File("presets"); }

  lumvik_host_status Write(const std::string& name, const SettingsObject& settings,
                           int32_t overwrite = 0) const {
    return lumvik_host_write_preset(Folder().c_str(), name.c_str(), settings.Handle(), overwrite);
  }

  lumvik_host_status Read(const std::string& name) const {
    lumvik_host_settings* settings = nullptr;
    const lumvik_host_status status = lumvik_host_read_preset(Folder().c_str(), name.c_str(), &settings);
    EXPECT_EQ(settings == nullptr, status != LUMVIK_HOST_OK);
    lumvik_host_settings_close(settings);
    return status;
  }

  std::string List() const {
    char* names = nullptr;
    EXPECT_EQ(lumvik_host_list_presets(Folder().c_str(), &names), LUMVIK_HOST_OK) << lumvik_host_last_error();
    return Released(names);
  }

  void WriteText(const std::string& name, const std::string& text) const {
    fs::create_directories(Folder());
    std::ofstream(fs::u8path(Folder() + '/' + name), std::ios::binary) << text;
  }

  const lumvik::test::TempDir folder_;
};

TEST_F(PresetsTest, AWrittenPresetIsListedAndRead) {
  ASSERT_EQ(Write("Warm evening", SettingsObject::From(R"({"lumvik": 2, "temperature": 7500})")),
            LUMVIK_HOST_OK);
  ASSERT_EQ(Write("Überblick 100 %", SettingsObject()), LUMVIK_HOST_OK);
  ASSERT_EQ(Write("1.5 stops", SettingsObject()), LUMVIK_HOST_OK);
  EXPECT_EQ(List(), R"(["1.5 stops","Warm evening","Überblick 100 %"])");
  lumvik_host_settings* handle = nullptr;
  ASSERT_EQ(lumvik_host_read_preset(Folder().c_str(), "Warm evening", &handle), LUMVIK_HOST_OK);
  const SettingsObject preset(handle);
  EXPECT_EQ(preset.Text(), "{\n  \"lumvik\": 2,\n  \"temperature\": 7500.0\n}\n");
}

TEST_F(PresetsTest, AnExistingPresetIsReplacedOnRequest) {
  ASSERT_EQ(Write("a", SettingsObject()), LUMVIK_HOST_OK);
  const SettingsObject other = SettingsObject::From(R"({"lumvik": 2, "tint": 1})");
  ExpectFailure(Write("a", other), LUMVIK_HOST_EXISTS, "the file exists");
  ASSERT_EQ(Write("a", other, 1), LUMVIK_HOST_OK);
  lumvik_host_settings* handle = nullptr;
  ASSERT_EQ(lumvik_host_read_preset(Folder().c_str(), "a", &handle), LUMVIK_HOST_OK);
  EXPECT_TRUE(SettingsObject(handle).Equals(other));
}

TEST_F(PresetsTest, OnlyPresetsAreListed) {
  for (const char* name :
       {"a.json", "b.JSON", "c.txt", ".d.json", ".json", "e.json.bak", "back\\slash.json"}) {
    WriteText(name, "{}");
  }
  fs::create_directory(fs::path(Folder()) / "folder.json");
  EXPECT_EQ(List(), R"(["a"])");
}

#if !defined(_WIN32)
TEST_F(PresetsTest, NamesThatAreNotUtf8AreNotListed) {
  WriteText("a.json", "{}");
  WriteText("b\xFF.json", "{}");
  EXPECT_EQ(List(), R"(["a"])");
}
#endif

TEST_F(PresetsTest, OtherNamesAreRefused) {
  for (const char* name : {"", ".", "..", ".hidden", "../a", "a/b", "/a", "a\\b", "C:a"}) {
    const std::string why = std::string("'") + name + "' is not a name of a preset";
    ExpectFailure(Write(name, SettingsObject()), LUMVIK_HOST_INVALID_ARGUMENT, why);
    ExpectFailure(Read(name), LUMVIK_HOST_INVALID_ARGUMENT, why);
  }
  ExpectFailure(Write("a\xFF", SettingsObject()), LUMVIK_HOST_INVALID_ARGUMENT, "is not a name of a preset");
  EXPECT_FALSE(fs::exists(Folder()));
}

TEST_F(PresetsTest, FailuresNameTheFile) {
  ExpectFailure(Read("none"), LUMVIK_HOST_NOT_FOUND, "none.json': there is no such file");
  WriteText("bad.json", "{");
  ExpectFailure(Read("bad"), LUMVIK_HOST_INVALID_ARGUMENT, "bad.json': line 1: syntax error");
  char* names = nullptr;
  ExpectFailure(lumvik_host_list_presets(folder_.File("none").c_str(), &names), LUMVIK_HOST_NOT_FOUND,
                "cannot list the presets in '" + folder_.File("none") + "'");
  EXPECT_EQ(names, nullptr);
  std::ofstream(folder_.File("file")) << "no folder";
  ExpectFailure(lumvik_host_write_preset(folder_.File("file").c_str(), "a", SettingsObject().Handle(), 0),
                LUMVIK_HOST_NOT_FOUND, "cannot create the folder '" + folder_.File("file") + "'");
}

}  // namespace
}  // namespace lumvik::host::test
