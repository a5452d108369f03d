// Finding and loading the metadata module.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "base/failure.h"
#include "lumvik_host.h"
#include "metadata/loaded_module.h"
#include "metadata/metadata_module.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::TempDir;

TEST(ModuleLoadingTest, TheInstalledModuleIsFound) {
  EXPECT_EQ(lumvik_host_has_metadata_module(), LUMVIK_HOST_OK) << lumvik_host_last_error();
}

TEST(ModuleLoadingTest, ManyThreadsMayLoadIt) {
  constexpr int kThreads = 8;
  std::vector<int> statuses(kThreads, -1);
  std::vector<std::thread> threads;
  for (int& status : statuses) threads.emplace_back([&] { status = lumvik_host_has_metadata_module(); });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(statuses, std::vector<int>(kThreads, LUMVIK_HOST_OK));
}

#if !defined(_WIN32)

// A process loads a module only once, so each of these tests starts another.
class UnusableModuleTest : public ::testing::Test {
 protected:
  UnusableModuleTest() { ::testing::FLAGS_gtest_death_test_style = "threadsafe"; }

  std::string Module() const { return folder_.File(kModuleFile); }

  // Ends the process with the status of looking for the module in `folder`, and writes the text.
  [[noreturn]] static void Report(const std::string& folder) {
    setenv("LUMVIK_MODULES", folder.c_str(), 1);
    const int status = lumvik_host_has_metadata_module();
    std::fputs(lumvik_host_last_error(), stderr);
    std::_Exit(status);
  }

  TempDir folder_;
};

using ::testing::ExitedWithCode;

TEST_F(UnusableModuleTest, AMissingModuleIsReported) {
  EXPECT_EXIT(
      Report(folder_.path()), ExitedWithCode(LUMVIK_HOST_UNSUPPORTED),
      "^the metadata module is not installed: there is no liblumvik_metadata\\.so in '/.*', '/.*lumvik', "
      "'/[^']*'$");
}

TEST_F(UnusableModuleTest, AFileThatIsNoLibraryIsReported) {
  EXPECT_EXIT((std::ofstream(Module()) << "text", Report(folder_.path())),
              ExitedWithCode(LUMVIK_HOST_UNSUPPORTED),
              "^the metadata module cannot be loaded: .*liblumvik_metadata\\.so: file too short$");
}

TEST_F(UnusableModuleTest, AnotherLibraryIsReported) {
  EXPECT_EXIT((std::filesystem::create_symlink(LUMVIK_ENGINE_FILE, Module()), Report(folder_.path())),
              ExitedWithCode(LUMVIK_HOST_UNSUPPORTED),
              "^the metadata module cannot be loaded: .*undefined symbol: lumvik_metadata_module$");
}

TEST_F(UnusableModuleTest, AnotherVersionIsRefused) {
  EXPECT_EXIT(Report(LUMVIK_OTHER_VERSION_FOLDER), ExitedWithCode(LUMVIK_HOST_UNSUPPORTED),
              "^the metadata module '/.*liblumvik_metadata\\.so' cannot be used: its version is 3, not 2$");
}

TEST_F(UnusableModuleTest, AModuleInstalledLaterIsFound) {
  EXPECT_EXIT((static_cast<void>(setenv("LUMVIK_MODULES", folder_.path().c_str(), 1)),
               static_cast<void>(lumvik_host_has_metadata_module()), Report(LUMVIK_MODULE_FOLDER)),
              ExitedWithCode(LUMVIK_HOST_OK), "");
}

TEST_F(UnusableModuleTest, WhatNeedsTheModuleIsUnsupported) {
  EXPECT_EXIT(
      {
        setenv("LUMVIK_MODULES", folder_.path().c_str(), 1);
        EXPECT_EQ(ReadModuleExif(LUMVIK_SAMPLES "/sample_small.ARW").lens, "");
        try {
          ReadCameraRawSettings(LUMVIK_SAMPLES "/sample_small.ARW");
        } catch (const Failure& failure) {
          std::_Exit(failure.GetStatus());
        }
        std::_Exit(LUMVIK_HOST_OK);
      },
      ExitedWithCode(LUMVIK_HOST_UNSUPPORTED), "");
}

#endif

}  // namespace
}  // namespace lumvik::host::test
