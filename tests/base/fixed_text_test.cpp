#include "base/fixed_text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace lumvik::test {
namespace {

constexpr size_t kSize = 8;

// All bytes of a field that previously held other data.
std::string Copied(const char* text) {
  char field[kSize];
  std::memset(field, '#', kSize);
  CopyText(field, text);
  return {field, kSize};
}

std::string Padded(std::string text) {
  text.resize(kSize);
  return text;
}

TEST(FixedText, TheRestOfTheFieldBecomesNul) {
  EXPECT_EQ(Copied("abc"), Padded("abc"));
}

TEST(FixedText, AnEmptyTextClearsTheField) {
  EXPECT_EQ(Copied(""), Padded(""));
}

TEST(FixedText, TheLongestFittingTextIsKeptWhole) {
  EXPECT_EQ(Copied("1234567"), Padded("1234567"));
}

TEST(FixedText, ALongerTextIsCutAndTerminated) {
  EXPECT_EQ(Copied("12345678"), Padded("1234567"));
  EXPECT_EQ(Copied(std::string(1000, 'x').c_str()), Padded("xxxxxxx"));
}

TEST(FixedText, NoMoreIsReadThanFits) {
  const std::vector<char> unterminated(kSize - 1, 'y');  // AddressSanitizer checks reads past its end
  EXPECT_EQ(Copied(unterminated.data()), Padded("yyyyyyy"));
}

}  // namespace
}  // namespace lumvik::test
