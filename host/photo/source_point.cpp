#include "photo/source_point.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <string>
#include <vector>

namespace lumvik::host {
namespace {

// As in the engine's stages. Coordinates refer to the centers of pixels.
constexpr float kPerspectiveStrength = 0.15F;
constexpr float kDistortionStrength = -0.5F;
constexpr float kUncropped = 0.99F;
constexpr int kMinCroppedSide = 11;

cv::Rect CroppedPart(const Settings& settings, cv::Size frame) {
  const auto number = [&](const char* key) { return std::get<float>(settings.at(key)); };
  const auto pixels = [](int length, float fraction) {
    return static_cast<int>(static_cast<float>(length) * fraction);
  };
  const cv::Rect whole({0, 0}, frame);
  const float w = number("crop.w");
  const float h = number("crop.h");
  if (w <= 0 || h <= 0) return whole;
  if (number("crop.x") == 0 && number("crop.y") == 0 && w >= kUncropped && h >= kUncropped) return whole;
  const int x = std::max(pixels(frame.width, number("crop.x")), 0);
  const int y = std::max(pixels(frame.height, number("crop.y")), 0);
  const cv::Rect part(x, y, std::min(pixels(frame.width, w), frame.width - x),
                      std::min(pixels(frame.height, h), frame.height - y));
  return part.width < kMinCroppedSide || part.height < kMinCroppedSide ? whole : part;
}

cv::Point2d BeforePerspective(cv::Point2d point, cv::Size frame, float horizontal, float vertical) {
  if (horizontal == 0 && vertical == 0) return point;
  const auto width = static_cast<float>(frame.width);
  const auto height = static_cast<float>(frame.height);
  const float dx = width * horizontal / 100 * kPerspectiveStrength;
  const float dy = height * vertical / 100 * kPerspectiveStrength;
  const std::vector<cv::Point2f> from = {{0, 0}, {width, 0}, {width, height}, {0, height}};
  const std::vector<cv::Point2f> to = {
      {dx, dy}, {width - dx, dy}, {width + dx, height - dy}, {-dx, height - dy}};
  const cv::Matx33d back = cv::getPerspectiveTransform(to, from);
  const cv::Vec3d before = back * cv::Vec3d(point.x, point.y, 1);
  return {before[0] / before[2], before[1] / before[2]};
}

cv::Point2d BeforeRotation(cv::Point2d point, cv::Size frame, float degrees) {
  const cv::Point2f center(static_cast<float>(frame.width) / 2, static_cast<float>(frame.height) / 2);
  const cv::Matx23d back = cv::getRotationMatrix2D(center, -static_cast<double>(degrees), 1);
  const cv::Vec2d before = back * cv::Vec3d(point.x, point.y, 1);
  return {before[0], before[1]};
}

cv::Point2d BeforeDistortion(cv::Point2d point, cv::Size frame, float percent) {
  const double strength = percent / 100 * kDistortionStrength;
  const cv::Point2d center(frame.width / 2.0, frame.height / 2.0);
  const double radius = std::max(center.x, center.y);
  const cv::Point2d offset = (point - center) / radius;
  return center + (offset.dot(offset) * strength + 1) * radius * offset;
}

// The engine mirrors the image at its edges.
double Mirrored(double position, int length) {
  const double period = 2.0 * length;
  const double in_period = std::fmod(std::fmod(position + 0.5, period) + period, period);
  return in_period < length ? in_period : period - in_period;
}

}  // namespace

cv::Point2d SourcePoint(cv::Point2d rendered, cv::Size size, const Settings& complete) {
  const auto number = [&](const char* key) { return std::get<float>(complete.at(key)); };
  const cv::Rect part = CroppedPart(complete, size);
  cv::Point2d point(part.x + rendered.x * part.width - 0.5, part.y + rendered.y * part.height - 0.5);
  point = BeforePerspective(point, size, number("perspective_h"), number("perspective_v"));
  point = BeforeRotation(point, size, number("rotation"));
  if (std::get<bool>(complete.at("flip_h"))) point.x = size.width - 1 - point.x;
  if (std::get<bool>(complete.at("flip_v"))) point.y = size.height - 1 - point.y;
  point = BeforeDistortion(point, size, number("distortion"));
  return {Mirrored(point.x, size.width) / size.width, Mirrored(point.y, size.height) / size.height};
}

}  // namespace lumvik::host
