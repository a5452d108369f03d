#include "support/raw_kinds.h"

#include <gtest/gtest.h>

#include "support/opened_raw.h"

namespace lumvik::test {
namespace {

TEST(RawKindsTest, EachReachesItsDecoder) {
  for (const RawKind& kind : RawKinds()) {
    SCOPED_TRACE(kind.name);
    OpenedRaw raw(kind.file);
    EXPECT_EQ(raw.DecoderName(), kind.decoder);
    EXPECT_EQ(raw->unpack(), LIBRAW_SUCCESS);
    EXPECT_EQ(raw->imgdata.process_warnings, 0U);
  }
}

}  // namespace
}  // namespace lumvik::test
