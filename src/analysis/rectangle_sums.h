// Sums over the rectangles of a plane.
#ifndef LUMVIK_ANALYSIS_RECTANGLE_SUMS_H_
#define LUMVIK_ANALYSIS_RECTANGLE_SUMS_H_

#include <opencv2/imgproc.hpp>

namespace lumvik {

// A summed-area table (F. C. Crow, "Summed-area tables for texture mapping", SIGGRAPH 1984): four look-ups
// for a sum, however large the rectangle is.
class RectangleSums {
 public:
  explicit RectangleSums(const cv::Mat& plane) { cv::integral(plane, table_, CV_64F); }

  // `rectangle` lies within the plane.
  double operator()(const cv::Rect& rectangle) const {
    const auto* above = table_.ptr<double>(rectangle.y);
    const auto* below = table_.ptr<double>(rectangle.y + rectangle.height);
    const int right = rectangle.x + rectangle.width;
    return below[right] - below[rectangle.x] - above[right] + above[rectangle.x];
  }

  cv::Size PlaneSize() const { return {table_.cols - 1, table_.rows - 1}; }

 private:
  cv::Mat table_;  // one row and one column more than the plane; CV_64FC1
};

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_RECTANGLE_SUMS_H_
