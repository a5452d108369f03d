// Prints how much two 16-bit images of the same size differ, and fails if they do.
//
//   compare_pictures A B
#include <cstdio>
#include <opencv2/imgcodecs.hpp>

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const cv::Mat a = cv::imread(argv[1], cv::IMREAD_UNCHANGED);
  const cv::Mat b = cv::imread(argv[2], cv::IMREAD_UNCHANGED);
  if (a.empty() || a.depth() != CV_16U || a.type() != b.type() || a.size() != b.size()) {
    std::fprintf(stderr, "not two 16-bit images of the same size\n");
    return 2;
  }
  cv::Mat difference;
  cv::absdiff(a, b, difference);
  difference = difference.reshape(1);
  const double largest = cv::norm(difference, cv::NORM_INF);
  const int differing = cv::countNonZero(difference);
  const int beyond_one = cv::countNonZero(difference > 1);
  std::printf("largest difference %.0f of 65535; of %zu samples %d differ, %d by more than 1\n", largest,
              difference.total(), differing, beyond_one);
  return differing == 0 ? 0 : 1;
}
