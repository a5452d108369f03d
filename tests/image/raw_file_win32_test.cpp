#include <gtest/gtest.h>

#include "image/raw_file.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

TEST(RawFileWin32, NamesAreUtf8) {
  const TempDir dir;
  const std::string path = dir.File("\xC3\xA9 \xE5\x86\x99\xE7\x9C\x9F.ARW");
  EXPECT_NE(OpenRawFile(WriteBytes(path, ReadBytes(LUMVIK_SAMPLES "/sample_small.ARW")), {}), nullptr);
}

TEST(RawFileWin32, WhatIsNoFileIsRefusedAtOnce) {
  const Deadline deadline;
  EXPECT_EQ(OpenRawFile(MakePipe("pipe.ARW"), {}), nullptr);
  EXPECT_EQ(OpenRawFile("NUL", {}), nullptr);
}

}  // namespace
}  // namespace lumvik::test
