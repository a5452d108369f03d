// Adjustments reach the engine with the right sign, and only when given.
#include "command_test.h"

namespace lumvik::test {
namespace {

using AdjustmentsTest = CommandTest;

TEST_F(AdjustmentsTest, WithoutOptionsTheImageIsPreserved) {
  EXPECT_EQ(GreatestDifference(Developed(Photograph("in.png"), Path("out.png")), SmallPicture()), 0);
}

TEST_F(AdjustmentsTest, OmittedOptionsAreNeutral) {
  const std::string in = Photograph("in.png");
  const cv::Mat plain = Developed(in, Path("plain.png"));
  const cv::Mat spelled = Developed(
      in, Path("spelled.png"),
      {"--exposure", "0", "--brightness", "0", "--contrast", "0", "--temperature", "6500", "--tint", "0"});
  EXPECT_EQ(GreatestDifference(plain, spelled), 0);
}

// Sets one option and returns the mean of blue, green and red.
class DirectionTest : public CommandTest {
 protected:
  cv::Scalar MeanWith(const std::string& option, const std::string& value) const {
    return cv::mean(Developed(Photograph("in.png"), Path("out.png"), {option, value}));
  }
  const cv::Scalar neutral_ = cv::mean(SmallPicture());
};

TEST_F(DirectionTest, ExposureBrightensAndDarkens) {
  const cv::Scalar brighter = MeanWith("--exposure", "1");
  const cv::Scalar darker = MeanWith("--exposure", "-1");
  for (int channel = 0; channel < 3; ++channel) {
    EXPECT_GT(brighter[channel], 1.3 * neutral_[channel]);
    EXPECT_NEAR(darker[channel], 0.5 * neutral_[channel], 0.5);
  }
}

TEST_F(DirectionTest, BrightnessBrightensAndDarkens) {
  const cv::Scalar brighter = MeanWith("--brightness", "50");
  const cv::Scalar darker = MeanWith("--brightness", "-.5e2");
  for (int channel = 0; channel < 3; ++channel) {
    EXPECT_GT(brighter[channel], neutral_[channel] + 5);
    EXPECT_LT(darker[channel], neutral_[channel] - 5);
  }
}

TEST_F(DirectionTest, ContrastSpreadsTheTones) {
  const std::string in = Photograph("in.png");
  const auto spread = [&](const char* contrast) {
    cv::Scalar mean, deviation;
    cv::meanStdDev(Developed(in, Path("out.png"), {"--contrast", contrast}), mean, deviation);
    return deviation[0];
  };
  EXPECT_GT(spread("80"), spread("0") + 5);
  EXPECT_LT(spread("-80"), spread("0") - 5);
}

TEST_F(DirectionTest, TemperatureWarmsAndCools) {
  const std::string in = Photograph("in.png");
  const auto red_over_blue = [&](const char* kelvin) {
    const cv::Scalar mean = cv::mean(Developed(in, Path("out.png"), {"--temperature", kelvin}));
    return mean[2] / mean[0];
  };
  EXPECT_GT(red_over_blue("10000"), 1.2 * red_over_blue("6500"));
  EXPECT_LT(red_over_blue("4000"), red_over_blue("6500") / 1.2);
}

TEST_F(DirectionTest, TintMovesGreen) {
  EXPECT_LT(MeanWith("--tint", "100")[1], neutral_[1] - 5);
  EXPECT_GT(MeanWith("--tint", "-100")[1], neutral_[1] + 5);
}

}  // namespace
}  // namespace lumvik::test
