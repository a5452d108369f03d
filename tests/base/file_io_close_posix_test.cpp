// A network or quota file system may report a lost write only when the file is closed.
#include <gtest/gtest.h>

#include <cerrno>

#include "base/file_io.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

bool closing_fails = false;

}  // namespace
}  // namespace lumvik::test

extern "C" int __real_close(int fd);
// The linker resolves this program's calls of close to this function.
extern "C" int __wrap_close(int fd);
extern "C" int __wrap_close(int fd) {
  const int result = __real_close(fd);
  if (!lumvik::test::closing_fails) return result;
  errno = EIO;
  return -1;
}

namespace lumvik::test {
namespace {

TEST(FileIoClose, AFailureFailsTheWrite) {
  const TempDir dir;
  const std::vector<uint8_t> bytes(10, 7);
  closing_fails = true;
  const bool written = WriteWholeFile(dir.File("a"), bytes);
  const std::vector<uint8_t> read = ReadWholeFile(WriteBytes(dir.File("b"), bytes));
  closing_fails = false;
  EXPECT_FALSE(written);
  EXPECT_EQ(read, bytes);
  EXPECT_TRUE(WriteWholeFile(dir.File("a"), bytes));
}

}  // namespace
}  // namespace lumvik::test
