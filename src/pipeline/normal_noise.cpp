#include "pipeline/normal_noise.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace lumvik {
namespace {

// The generator multiplies with carry: state low + 2^32 carry is followed by low * kMultiplier + carry. This
// is a product with kMultiplier modulo kModulus, and so the state after n draws is one with its nth power.
constexpr uint64_t kMultiplier = 4164903690;
constexpr uint64_t kModulus = (kMultiplier << 32) - 1;

constexpr uint64_t NextState(uint64_t state) {
  return (state & UINT32_MAX) * kMultiplier + (state >> 32);
}

constexpr uint64_t ModularProduct(uint64_t a, uint64_t b) {
  return static_cast<uint64_t>(static_cast<unsigned __int128>(a) * b % kModulus);
}

// The ziggurat method for draws of 32 bits with a sign, whose low bits select a layer. Marsaglia and Tsang,
// The Ziggurat Method for Generating Random Variables, 2000.
struct Ziggurat {
  static constexpr size_t kLayers = 128;
  static constexpr double kDraws = 2147483648.0;  // of either sign
  static constexpr double kTail = 3.442619855899;
  static constexpr double kLayerArea = 9.91256303526217e-3;

  std::array<uint32_t, kLayers> inside{};  // smaller draws are below the curve
  std::array<float, kLayers> scales{};     // value per draw

  Ziggurat() {
    const auto density = [](double x) { return std::exp(-0.5 * x * x); };
    const double base = kLayerArea / density(kTail);
    double outer = kTail;
    for (size_t layer = kLayers - 1; layer > 0; --layer) {
      const double inner = layer > 1 ? std::sqrt(-2.0 * std::log(kLayerArea / outer + density(outer))) : 0;
      inside[layer] = static_cast<uint32_t>(inner / outer * kDraws);
      scales[layer] = static_cast<float>(outer / kDraws);
      outer = inner;
    }
    inside[0] = static_cast<uint32_t>(kTail / base * kDraws);
    scales[0] = static_cast<float>(base / kDraws);
  }
};

// Values drawn in sequence. A generator waits for each product before it starts the next; several sequences,
// from states far enough apart, do not wait for each other.
class NoiseStream {
 public:
  // From a state below kModulus on.
  explicit NoiseStream(uint64_t state) : after_(state) {}

  void Write(float deviation, float* values, size_t count) {
    for (float* const end = values + count; values != end;) {
      if (at_ == kStates) Draw();
      values = WriteCertain(deviation, values, end);
      if (values != end && at_ != kStates) *values++ = DecideByOpenCv() * deviation;
    }
  }

  uint64_t State() const { return at_ == kStates ? after_ : states_[at_]; }

 private:
  static constexpr size_t kStates = 2048;
  static constexpr size_t kSequences = 4;
  static constexpr size_t kLength = kStates / kSequences;

  void Draw() {
    constexpr uint64_t kLeap = [] {
      uint64_t power = 1;
      for (size_t i = 0; i < kLength; ++i) power = ModularProduct(power, kMultiplier);
      return power;
    }();
    std::array<uint64_t, kSequences> next = {after_};
    for (size_t i = 1; i < kSequences; ++i) next[i] = ModularProduct(next[i - 1], kLeap);
    for (size_t at = 0; at < kLength; ++at) {
      for (size_t i = 0; i < kSequences; ++i) {
        states_[i * kLength + at] = next[i];
        next[i] = NextState(next[i]);
      }
    }
    after_ = next.back();
    at_ = 0;
  }

  // Stops at a draw that may not be below the curve. Returns the end of what it wrote.
  float* WriteCertain(float deviation, float* values, float* end) {
    static const Ziggurat kZiggurat;
    const size_t last = std::min(at_ + static_cast<size_t>(end - values), kStates);
    size_t at = at_;
    for (; at < last; ++at) {
      const auto bits = static_cast<uint32_t>(states_[at]);
      const auto draw = static_cast<int32_t>(bits);
      const size_t layer = bits % Ziggurat::kLayers;
      if ((draw < 0 ? -bits : bits) >= kZiggurat.inside[layer]) break;
      *values++ = static_cast<float>(draw) * kZiggurat.scales[layer] * deviation;
    }
    at_ = at;
    return values;
  }

  // One in 80 values takes further draws.
  float DecideByOpenCv() {
    cv::RNG generator;
    generator.state = states_[at_];
    const auto value = static_cast<float>(generator.gaussian(1));
    while (at_ < kStates && states_[at_] != generator.state) ++at_;
    if (at_ == kStates) after_ = generator.state;
    return value;
  }

  std::array<uint64_t, kStates> states_{};
  size_t at_ = kStates;
  uint64_t after_;  // the state after states_
};

}  // namespace

void FillWithNoise(cv::Mat& plane, double deviation, cv::RNG& generator) {
  // No draw leads to such a state, and the products do not hold for it.
  if (generator.state >= kModulus) return generator.fill(plane, cv::RNG::NORMAL, 0.0, deviation);
  NoiseStream stream(generator.state);
  for (int y = 0; y < plane.rows; ++y) {
    stream.Write(static_cast<float>(deviation), plane.ptr<float>(y), static_cast<size_t>(plane.cols));
  }
  generator.state = stream.State();
}

}  // namespace lumvik
