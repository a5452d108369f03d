// Names of files with control characters, which must neither end a line nor steer the terminal.
#include "terminal/printable.h"

#include "command_test.h"

namespace lumvik::test {
namespace {

TEST(PrintableTest, ControlCharactersAreEscaped) {
  EXPECT_EQ(Printable("a\nb\rc\td"), "a\\nb\\rc\\td");
  EXPECT_EQ(Printable("\x1B[31mred\x7F"), "\\x1B[31mred\\x7F");
  EXPECT_EQ(Printable(std::string("a\0b", 3)),
            "a\\x00"
            "b");
}

TEST(PrintableTest, SoAreThoseBeyondAscii) {
  EXPECT_EQ(Printable("a\xC2\x85z"), "a\\xC2\\x85z");                       // next line, U+0085
  EXPECT_EQ(Printable("a\x9Bz"), "a\\x9Bz");                                // CSI in an 8-bit terminal
  EXPECT_EQ(Printable("gpj.\xE2\x80\xAE.exe"), "gpj.\\xE2\\x80\\xAE.exe");  // right-to-left override
  EXPECT_EQ(Printable("\xE2\x81\xA6"), "\\xE2\\x81\\xA6");
  EXPECT_EQ(Printable("\xE2\x80"), "\xE2\\x80");  // cut off
}

TEST(PrintableTest, OtherTextStaysAsItIs) {
  for (const char* text : {"", "C:\\a b\\c.jpg", "\xC3\xA9t\xC3\xA9", "\xE9t\xE9", "\xE6\x97\xA5\xE6\x9C\xAC",
                           "\xF0\x9F\x93\xB7", "\xC2\xA0"}) {
    EXPECT_EQ(Printable(text), text);
  }
}

using PrintedNamesTest = CommandTest;

TEST_F(PrintedNamesTest, ResultsAndMessagesStayOnOneLine) {
  const std::string input = Photograph("in\x1B[2J\n.png");
  const std::string output = Path("out\x1B[2J\n.png");
  const ProcessResult result = Develop(input, output);
  EXPECT_EQ(result.status, kSuccess) << result.err;
  EXPECT_EQ(result.out, Path("out\\x1B[2J\\n.png") + " 60x40\n");
  const std::string missing = Path("missing\x1B[2J\n.png");
  ExpectRefusal(Develop(missing, output), kFailure, "missing\\x1B[2J\\n.png'");
}

}  // namespace
}  // namespace lumvik::test
