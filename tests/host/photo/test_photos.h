// Small photographs, and handles for tests.
#ifndef LUMVIK_TESTS_HOST_PHOTO_TEST_PHOTOS_H_
#define LUMVIK_TESTS_HOST_PHOTO_TEST_PHOTOS_H_

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "lumvik.h"
#include "lumvik_host.h"
#include "settings/settings.h"

namespace lumvik::host::test {

using Bytes = std::vector<std::uint8_t>;

// A noisy gradient of 96 x 64 pixels as a file of the format. A RAW file is a DNG.
Bytes PhotoBytes(lumvik_host_format format);

struct PhotoCloser {
  void operator()(lumvik_host_photo* photo) const { lumvik_host_close(photo); }
};
using PhotoHandle = std::unique_ptr<lumvik_host_photo, PhotoCloser>;

// Null, with a test failure, if it cannot be opened.
PhotoHandle OpenForTest(const std::string& path);
PhotoHandle OpenBytesForTest(const Bytes& bytes);

void SetForTest(const PhotoHandle& photo, const Settings& settings);

struct TestPreview {
  int width = 0;
  int height = 0;
  Bytes pixels;

  bool operator==(const TestPreview& other) const {
    return width == other.width && height == other.height && pixels == other.pixels;
  }
};

// Any preview, its rows without padding unless the options give a stride.
TestPreview PreviewForTest(const PhotoHandle& photo, const lumvik_host_preview_options& options = {});

// What the engine makes of the file with these settings.
TestPreview EnginePreview(const std::string& path, const Settings& settings);

lumvik_host_photo_info InfoForTest(const PhotoHandle& photo);

}  // namespace lumvik::host::test

#endif  // LUMVIK_TESTS_HOST_PHOTO_TEST_PHOTOS_H_
