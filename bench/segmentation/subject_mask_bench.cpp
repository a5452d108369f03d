// Subject segmentation, against cv::grabCut alone: `ratio` is GrabCut's share of the time.
#include <opencv2/imgproc.hpp>

#include "alternating.h"
#include "reference/subject_mask.h"
#include "segmentation/subject_mask.h"
#include "support/test_images.h"

namespace lumvik::bench {
namespace {

constexpr int kIterations = 5;
constexpr uint64_t kSeed = 1;

Comparison Segment(cv::Size size) {
  const cv::Mat image = test::ResizedPhotograph("cat.jpg", size);
  const cv::Mat working = reference::SegmentationImage(image);
  return {[=] {
            cv::theRNG().state = kSeed;
            cv::Mat mask;
            SegmentSubject(image, -1, -1, mask);
          },
          [=] {
            cv::theRNG().state = kSeed;
            cv::Mat labels = cv::Mat::zeros(working.size(), CV_8U);
            cv::Mat background;
            cv::Mat foreground;
            cv::grabCut(working, labels, SubjectRectangle(working.size(), -1, -1), background, foreground,
                        kIterations, cv::GC_INIT_WITH_RECT);
          },
          static_cast<int64_t>(image.total()), static_cast<int64_t>(image.total() * image.elemSize())};
}

const bool kRegistered = [] {
  for (const cv::Size size : {cv::Size(2000, 1333), cv::Size(4096, 2731)}) {
    RegisterComparison("segment/" + std::to_string(size.width), [size] { return Segment(size); });
  }
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
