// Shared by the tests of the exported functions: contexts, small photographs, and dumps of a context's state.
#ifndef LUMVIK_TESTS_API_API_TEST_H_
#define LUMVIK_TESTS_API_API_TEST_H_

#include <gtest/gtest.h>

#include <memory>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "api/engine_context.h"
#include "lumvik.h"
#include "support/file_bytes.h"
#include "support/raw_writer.h"
#include "support/temp_dir.h"
#include "support/test_images.h"

namespace lumvik::test {

inline constexpr int kFailed = -1;

// Fixed last-error texts.
inline constexpr char kNoImage[] = "no image loaded";
inline constexpr char kNoFile[] = "no file loaded";
inline constexpr char kUnreadable[] = "OpenCV could not read: ";

struct ContextDeleter {
  void operator()(EngineContext* context) const { lumvik_destroy_context(context); }
};
using ContextPtr = std::unique_ptr<EngineContext, ContextDeleter>;
ContextPtr CreateContext();

using Bytes = std::vector<uint8_t>;

// 48x32, 8-bit BGR. Asymmetric, and its channels differ, so that every flip, rotation or swap shows.
cv::Mat SmallPicture();
// The picture as 16 bits, which is its render with neutral settings.
cv::Mat Widened(const cv::Mat& picture);
// One line a field.
std::string Describe(const Adjustments& adjustments);
std::string Describe(const ExifInfo& info);
// The state of a context, images by size and digest; the rendered image only while it is current.
std::string Describe(const EngineContext& context);

class ApiTest : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const { return folder_.File(name); }
  const std::filesystem::path& folder() const { return folder_.path(); }
  std::string WritePicture(const std::string& name, const cv::Mat& picture = SmallPicture()) const;
  std::string WriteRaw(const std::string& name, const RawOptions& options = {},
                       const cv::Mat& picture = SmallPicture()) const;

  std::string LastError() const { return lumvik_last_error(ctx()); }
  // What an export writes now: 16-bit BGR.
  cv::Mat Exported() const { return Exported(ctx()); }
  cv::Mat Exported(EngineContext* context) const;

  // Loads SmallPicture() with settings that change no sample.
  void LoadNeutral() const;

  EngineContext* ctx() const { return context_.get(); }

  // Releases ownership of the context, for a test that destroys it.
  EngineContext* Release() { return context_.release(); }

 private:
  TempDir folder_;
  ContextPtr context_ = CreateContext();
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_API_API_TEST_H_
