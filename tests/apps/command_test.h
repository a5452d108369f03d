// Fixture for the command line: an empty folder, small photographs and the command.
#ifndef LUMVIK_TESTS_APPS_COMMAND_TEST_H_
#define LUMVIK_TESTS_APPS_COMMAND_TEST_H_

#include <gtest/gtest.h>

#include <filesystem>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "run_process.h"
#include "support/process_state.h"
#include "support/temp_dir.h"

namespace lumvik::test {

inline constexpr int kSuccess = 0;
inline constexpr int kFailure = 1;
inline constexpr int kUsage = 2;
inline constexpr int kDamaged = 3;
inline constexpr int kDiskFull = 4;

inline const std::string kRawSample = LUMVIK_SAMPLES "/sample_small.ARW";
inline const std::string kTower = LUMVIK_TEST_DATA "/tower_orientation8.jpg";  // EXIF orientation 8

// The command, and the same without the superuser's override of file permissions.
std::vector<std::string> Command();
std::vector<std::string> UnprivilegedCommand();

std::string ReadFile(const std::filesystem::path& path);
void WriteFile(const std::filesystem::path& path, const std::string& bytes);

// A 60x40 image without symmetry or values near 0 and 255.
cv::Mat SmallPicture();

// The bytes of the pixels of an image file. Two files with the same image differ in their marks, which name
// the settings.
std::string PixelsOf(const std::string& path);

// The maximum and mean difference of two images of the same size and type.
double GreatestDifference(const cv::Mat& a, const cv::Mat& b);
double MeanDifference(const cv::Mat& a, const cv::Mat& b);

// The option without dashes, for use in test names.
std::string TestNameOf(const std::string& option);

// Expects the status, an empty standard output, and one line "lumvik: ..." containing `part` on standard
// error.
void ExpectRefusal(const ProcessResult& result, int status, const std::string& part);

class CommandTest : public ::testing::Test {
 protected:
  void TearDown() override;  // expects that no temporary file is left

  std::string Path(const std::string& name) const { return folder_.File(name); }

  // Writes SmallPicture() to this name and returns its path.
  std::string Photograph(const std::string& name) const;

  // Runs `prefix develop input -o output options...`.
  static ProcessResult Develop(const std::string& input, const std::string& output,
                               const std::vector<std::string>& options = {},
                               const std::vector<std::string>& prefix = Command());

  // Develops as above, expects success and returns the image in `output` as stored.
  static cv::Mat Developed(const std::string& input, const std::string& output,
                           const std::vector<std::string>& options = {});

 private:
  TempDir folder_;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_APPS_COMMAND_TEST_H_
