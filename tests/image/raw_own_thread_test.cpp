#include <gtest/gtest.h>
#include <libraw/libraw.h>

#include <stdexcept>
#include <thread>

#include "image/raw/own_thread.h"

namespace lumvik::test {
namespace {

TEST(OwnThreadTest, IsNotTheCallersAndHasEnded) {
  std::thread::id used = std::this_thread::get_id();
  InOwnThread([&] { used = std::this_thread::get_id(); });
  EXPECT_NE(used, std::this_thread::get_id());
}

TEST(OwnThreadTest, WhatIsThrownArrives) {
  EXPECT_THROW(InOwnThread([] { throw std::runtime_error("text"); }), std::runtime_error);
  try {
    InOwnThread([] { throw LibRaw_exceptions{LIBRAW_EXCEPTION_DECODE_RAW}; });
    ADD_FAILURE() << "nothing was thrown";
  } catch (const LibRaw_exceptions& exception) {
    EXPECT_EQ(exception, LIBRAW_EXCEPTION_DECODE_RAW);
  }
}

}  // namespace
}  // namespace lumvik::test
