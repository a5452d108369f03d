#include <gtest/gtest.h>

#include <memory>

#include "image/raw_file.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

int Open(const std::string& path) {
  const auto raw = std::make_unique<LibRaw>();
  return OpenRawFile(*raw, path);
}

TEST(RawFileWin32, NamesAreUtf8) {
  const TempDir dir;
  const std::string path = dir.File("\xC3\xA9 \xE5\x86\x99\xE7\x9C\x9F.ARW");
  EXPECT_EQ(Open(WriteBytes(path, ReadBytes(LUMVIK_SAMPLES "/sample_small.ARW"))), LIBRAW_SUCCESS);
}

TEST(RawFileWin32, WhatIsNoFileIsRefusedAtOnce) {
  const Deadline deadline;
  EXPECT_EQ(Open(MakePipe("pipe.ARW")), LIBRAW_IO_ERROR);
  EXPECT_EQ(Open("NUL"), LIBRAW_IO_ERROR);
}

}  // namespace
}  // namespace lumvik::test
