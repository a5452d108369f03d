// What the tests of the command line share: an empty folder, small photographs, and the command itself.
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

inline const std::string kRawSample = LUMVIK_SAMPLES "/sample_small.ARW";
inline const std::string kTower = LUMVIK_TEST_DATA "/tower_orientation8.jpg";  // its EXIF says orientation 8

// The command, and the same for a caller whom file permissions bind even when he is the superuser.
std::vector<std::string> Command();
std::vector<std::string> UnprivilegedCommand();

std::string ReadFile(const std::filesystem::path& path);
void WriteFile(const std::filesystem::path& path, const std::string& bytes);

// A picture of 60x40 that no turning or mirroring leaves as it is, free of values near 0 and 255.
cv::Mat SmallPicture();

// The greatest and the mean difference of two pictures of one size and type.
double GreatestDifference(const cv::Mat& a, const cv::Mat& b);
double MeanDifference(const cv::Mat& a, const cv::Mat& b);

// The option without its dashes, as the name of a test may have none.
std::string TestNameOf(const std::string& option);

// Expects the status, nothing on standard output, and one line "lumvik: ..." with `part` on standard error.
void ExpectRefusal(const ProcessResult& result, int status, const std::string& part);

class CommandTest : public ::testing::Test {
 protected:
  void TearDown() override;  // expects that no temporary file is left

  std::string Path(const std::string& name) const { return folder_.File(name); }

  // Writes SmallPicture() under this name and returns its path.
  std::string Photograph(const std::string& name) const;

  // Runs `prefix develop input -o output options...`.
  static ProcessResult Develop(const std::string& input, const std::string& output,
                               const std::vector<std::string>& options = {},
                               const std::vector<std::string>& prefix = Command());

  // Develops as above, expects success and returns the picture in `output` as it is stored there.
  static cv::Mat Developed(const std::string& input, const std::string& output,
                           const std::vector<std::string>& options = {});

 private:
  TempDir folder_;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_APPS_COMMAND_TEST_H_
