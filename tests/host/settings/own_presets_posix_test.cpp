// The user's own presets.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include "lumvik_host.h"
#include "settings/settings_object.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

namespace fs = std::filesystem;

// Sets an environment variable, or removes it, and restores it later.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* before = std::getenv(name)) before_ = before;
    Set(value);
  }
  ~ScopedVariable() { Set(before_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void Set(const std::optional<std::string>& value) const {
    value ? ::setenv(name_, value->c_str(), 1) : ::unsetenv(name_);
  }

  const char* name_;
  std::optional<std::string> before_;
};

std::string OwnPresets() {
  char* names = nullptr;
  EXPECT_EQ(lumvik_host_list_presets(nullptr, &names), LUMVIK_HOST_OK) << lumvik_host_last_error();
  return Released(names);
}

TEST(OwnPresetsTest, AreInTheFolderForConfiguration) {
  const lumvik::test::TempDir folder;
  const ScopedVariable config("XDG_CONFIG_HOME", folder.File("config"));
  EXPECT_EQ(OwnPresets(), "[]");
  EXPECT_FALSE(fs::exists(folder.File("config")));
  ASSERT_EQ(lumvik_host_write_preset(nullptr, "a", SettingsObject().Handle(), 0), LUMVIK_HOST_OK);
  EXPECT_TRUE(fs::exists(folder.File("config/lumvik/presets/a.json")));
  EXPECT_EQ(OwnPresets(), R"(["a"])");
}

TEST(OwnPresetsTest, WithoutThatFolderAreInTheHomeFolder) {
  const lumvik::test::TempDir folder;
  const ScopedVariable home("HOME", folder.File(""));
  for (const std::optional<std::string>& unusable :
       {std::optional<std::string>(), std::optional<std::string>(""),
        std::optional<std::string>("relative")}) {
    const ScopedVariable config("XDG_CONFIG_HOME", unusable);
    ASSERT_EQ(lumvik_host_write_preset(nullptr, "a", SettingsObject().Handle(), 1), LUMVIK_HOST_OK);
    EXPECT_TRUE(fs::remove(folder.File(".config/lumvik/presets/a.json")));
  }
}

TEST(OwnPresetsTest, WithoutAnyFolderAreNotFound) {
  const ScopedVariable config("XDG_CONFIG_HOME", std::nullopt);
  const ScopedVariable home("HOME", std::nullopt);
  char* names = nullptr;
  ExpectFailure(lumvik_host_list_presets(nullptr, &names), LUMVIK_HOST_NOT_FOUND, "HOME is not set");
}

}  // namespace
}  // namespace lumvik::host::test
