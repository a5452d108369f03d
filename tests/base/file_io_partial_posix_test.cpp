// System calls that transfer less than they were asked for: nothing, when a signal interrupts them, or a
// part.
#include <gtest/gtest.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>

#include "base/file_io.h"
#include "support/file_bytes.h"
#include "support/process_state.h"
#include "support/temp_dir.h"

namespace lumvik::test {
namespace {

enum class Transfer { kWhole, kInterruptedParts, kNothing };

Transfer transfer = Transfer::kWhole;
bool interrupted = false;

template <typename Call>
ssize_t Transferred(size_t size, const Call& call) {
  constexpr size_t kPart = 100;
  if (transfer == Transfer::kWhole) return call(size);
  if (transfer == Transfer::kNothing) return 0;
  interrupted = !interrupted;
  if (!interrupted) return call(std::min(size, kPart));
  errno = EINTR;
  return -1;
}

}  // namespace
}  // namespace lumvik::test

extern "C" ssize_t __real_read(int fd, void* buffer, size_t size);
extern "C" ssize_t __real_write(int fd, const void* buffer, size_t size);
// The linker puts these in the place of read and write in this program.
extern "C" ssize_t __wrap_read(int fd, void* buffer, size_t size);
extern "C" ssize_t __wrap_write(int fd, const void* buffer, size_t size);

extern "C" ssize_t __wrap_read(int fd, void* buffer, size_t size) {
  return lumvik::test::Transferred(size, [&](size_t part) { return __real_read(fd, buffer, part); });
}

extern "C" ssize_t __wrap_write(int fd, const void* buffer, size_t size) {
  return lumvik::test::Transferred(size, [&](size_t part) { return __real_write(fd, buffer, part); });
}

namespace lumvik::test {
namespace {

class FileIoPartial : public ::testing::Test {
 protected:
  void TearDown() override { transfer = Transfer::kWhole; }

  const std::vector<uint8_t> bytes_ = std::vector<uint8_t>(1050, 7);
  const TempDir dir_;
  const Deadline deadline_;
};

TEST_F(FileIoPartial, ReadsGoOnToTheEnd) {
  const std::string path = WriteBytes(dir_.File("a"), bytes_);
  transfer = Transfer::kInterruptedParts;
  EXPECT_EQ(ReadWholeFile(path), bytes_);
}

TEST_F(FileIoPartial, WritesGoOnToTheEnd) {
  transfer = Transfer::kInterruptedParts;
  EXPECT_TRUE(WriteWholeFile(dir_.File("a"), bytes_));
  transfer = Transfer::kWhole;
  EXPECT_EQ(ReadBytes(dir_.File("a")), bytes_);
}

// As if another process truncated the file meanwhile.
TEST_F(FileIoPartial, WhatAReadDoesNotDeliverIsZero) {
  const std::string path = WriteBytes(dir_.File("a"), bytes_);
  transfer = Transfer::kNothing;
  EXPECT_EQ(ReadWholeFile(path), std::vector<uint8_t>(bytes_.size(), 0));
}

TEST_F(FileIoPartial, AWriteOfNothingFails) {
  transfer = Transfer::kNothing;
  EXPECT_FALSE(WriteWholeFile(dir_.File("a"), bytes_));
}

}  // namespace
}  // namespace lumvik::test
