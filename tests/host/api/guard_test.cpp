// Statuses and texts of failures.
#include "api/guard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <ios>
#include <new>
#include <opencv2/core.hpp>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

#include "lumvik_host.h"

namespace lumvik::host::test {
namespace {

using ::testing::EndsWith;
using ::testing::StartsWith;

constexpr std::size_t kLongText = 10000;

template <typename Exception>
Status StatusOfThrown(const Exception& exception) {
  return Guarded([&] { throw exception; });
}

// The text after a failure with `text`.
std::string ReportedText(const std::string& text) {
  StatusOfThrown(Failure(LUMVIK_HOST_INTERNAL, text));
  return lumvik_host_last_error();
}

TEST(GuardTest, SuccessKeepsTheText) {
  ReportedText("the earlier failure");
  EXPECT_EQ(Guarded([] {}), LUMVIK_HOST_OK);
  EXPECT_STREQ(lumvik_host_last_error(), "the earlier failure");
}

TEST(GuardTest, EveryExceptionHasAStatusAndAText) {
  EXPECT_EQ(StatusOfThrown(Failure(LUMVIK_HOST_STALE, "replaced")), LUMVIK_HOST_STALE);
  EXPECT_STREQ(lumvik_host_last_error(), "replaced");
  EXPECT_EQ(StatusOfThrown(std::bad_alloc()), LUMVIK_HOST_OUT_OF_MEMORY);
  EXPECT_STREQ(lumvik_host_last_error(), "not enough memory");
  EXPECT_EQ(StatusOfThrown(std::system_error(std::make_error_code(std::errc::no_space_on_device))),
            LUMVIK_HOST_DISK_FULL);
  EXPECT_EQ(StatusOfThrown(std::ios_base::failure("cannot read")), LUMVIK_HOST_IO_ERROR);
  EXPECT_EQ(StatusOfThrown(cv::Exception(cv::Error::StsNoMem, "", "", "", 0)), LUMVIK_HOST_OUT_OF_MEMORY);
  EXPECT_STREQ(lumvik_host_last_error(), "not enough memory");
  EXPECT_EQ(StatusOfThrown(cv::Exception(cv::Error::StsAssert, "", "", "", 0)), LUMVIK_HOST_INTERNAL);
  EXPECT_EQ(StatusOfThrown(std::runtime_error("two\nlines\n")), LUMVIK_HOST_INTERNAL);
  EXPECT_STREQ(lumvik_host_last_error(), "two lines");
  EXPECT_EQ(StatusOfThrown(42), LUMVIK_HOST_INTERNAL);
  EXPECT_STREQ(lumvik_host_last_error(), "an unknown failure");
}

TEST(GuardTest, AnEmptyMessageStillGivesAText) {
  EXPECT_EQ(StatusOfThrown(std::runtime_error("")), LUMVIK_HOST_INTERNAL);
  EXPECT_STRNE(lumvik_host_last_error(), "");
}

TEST(GuardTest, EachThreadHasItsText) {
  ReportedText("of the first thread");
  std::thread([] {
    EXPECT_STREQ(lumvik_host_last_error(), "");
    ReportedText("of the second thread");
    EXPECT_STREQ(lumvik_host_last_error(), "of the second thread");
  }).join();
  EXPECT_STREQ(lumvik_host_last_error(), "of the first thread");
}

TEST(GuardTest, LongTextsAreCut) {
  const std::string text = ReportedText(std::string(kLongText, 'a'));
  EXPECT_GT(text.size(), 1000U);
  EXPECT_LT(text.size(), kLongText);
  EXPECT_EQ(text, std::string(text.size(), 'a'));
}

TEST(GuardTest, LongTextsAreCutBetweenCharacters) {
  const std::string euro = "\xE2\x82\xAC";
  for (std::size_t shift = 0; shift < euro.size(); ++shift) {
    std::string text(shift, 'a');
    while (text.size() < kLongText) text += euro;
    const std::string cut = ReportedText(text);
    EXPECT_EQ((cut.size() - shift) % euro.size(), 0U) << shift;
    EXPECT_THAT(text, StartsWith(cut));
  }
}

TEST(GuardTest, TextsAreUtf8) {
  EXPECT_EQ(ReportedText("cannot read 'caf\xE9.jpg'"), "cannot read 'caf?.jpg'");
  EXPECT_EQ(ReportedText("\x80\xC0\xAF\xF8"), "????");
  EXPECT_EQ(ReportedText("\xED\xA0\x80"), "???");       // a surrogate
  EXPECT_EQ(ReportedText("\xF4\x90\x80\x80"), "????");  // beyond U+10FFFF
  EXPECT_EQ(ReportedText("cut \xE2\x82"), "cut ??");
  const std::string valid = "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x93\xB7";
  EXPECT_EQ(ReportedText(valid), valid);
}

TEST(GuardTest, ALongTextThatIsNotUtf8IsCutToo) {
  EXPECT_GT(ReportedText(std::string(kLongText, '\x80')).size(), 1000U);
}

TEST(GuardTest, TextsAreOneLine) {
  EXPECT_EQ(ReportedText("cannot read 'a\nb\r\x1B[31mc\x7F'"), "cannot read 'a b  [31mc '");
}

}  // namespace
}  // namespace lumvik::host::test
