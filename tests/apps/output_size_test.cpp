// --size: the size of the written image.
#include <opencv2/imgcodecs.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

class OutputSizeTest : public CommandTest {
 protected:
  cv::Size SizeWith(const std::string& size, std::vector<std::string> options = {}) {
    options.insert(options.end(), {"--size", size});
    const std::string out = Path(std::to_string(++count_) + ".png");
    const ProcessResult result = Develop(in_, out, options);
    EXPECT_EQ(result.status, kSuccess) << result.err;
    const cv::Mat image = cv::imread(out, cv::IMREAD_UNCHANGED);
    EXPECT_EQ(result.out, out + " " + std::to_string(image.cols) + "x" + std::to_string(image.rows) + "\n");
    return image.size();
  }

  const std::string in_ = Photograph("in.png");  // 60x40
  int count_ = 0;
};

TEST_F(OutputSizeTest, ANumberIsTheLongSide) {
  EXPECT_EQ(SizeWith("30"), cv::Size(30, 20));
  EXPECT_EQ(SizeWith("1"), cv::Size(1, 1));
  EXPECT_EQ(SizeWith("20", {"--crop", "0,0,0.4,1"}), cv::Size(12, 20));
}

TEST_F(OutputSizeTest, TwoNumbersAreABox) {
  EXPECT_EQ(SizeWith("30x30"), cv::Size(30, 20));
  EXPECT_EQ(SizeWith("60x10"), cv::Size(15, 10));
  EXPECT_EQ(SizeWith("15x40"), cv::Size(15, 10));
}

TEST_F(OutputSizeTest, APercentageIsOfTheDevelopedSize) {
  EXPECT_EQ(SizeWith("50%"), cv::Size(30, 20));
  EXPECT_EQ(SizeWith("12.5%"), cv::Size(8, 5));
  EXPECT_EQ(SizeWith("0.1%"), cv::Size(1, 1));
  EXPECT_EQ(SizeWith("50%", {"--crop", "0,0,0.5,1"}), cv::Size(15, 20));
}

TEST_F(OutputSizeTest, NothingIsEnlarged) {
  EXPECT_EQ(SizeWith("600"), cv::Size(60, 40));
  EXPECT_EQ(SizeWith("600x400"), cv::Size(60, 40));
  EXPECT_EQ(SizeWith("100%"), cv::Size(60, 40));
}

TEST_F(OutputSizeTest, KeepsTheBitDepth) {
  ASSERT_EQ(Develop(in_, Path("deep.png"), {"--size", "30", "--bits", "16"}).status, kSuccess);
  const cv::Mat image = cv::imread(Path("deep.png"), cv::IMREAD_UNCHANGED);
  EXPECT_EQ(image.depth(), CV_16U);
  EXPECT_EQ(image.size(), cv::Size(30, 20));
}

TEST_F(OutputSizeTest, OtherFormsAreRefused) {
  for (const char* text : {"", "0", "-1", "x", "30x", "x30", "30x0", "30x20x10", "30 x20", "1e3", "2.5", "0%",
                           "101%", "nan%", "%", "100001", "big"}) {
    ExpectRefusal(Develop(in_, Path("out.png"), {std::string("--size=") + text}), kUsage, "--size");
  }
  ExpectRefusal(Develop(in_, Path("out.png"), {"--size", "30x"}), kUsage,
                "--size: '30x' is not a size such as 2048, 1600x1200 or 50%");
}

}  // namespace
}  // namespace lumvik::test
