// Sums over rectangles of a plane.
#ifndef LUMVIK_ANALYSIS_RECTANGLE_SUMS_H_
#define LUMVIK_ANALYSIS_RECTANGLE_SUMS_H_

#include <opencv2/imgproc.hpp>

namespace lumvik {

// A summed-area table (F. C. Crow, "Summed-area tables for texture mapping", SIGGRAPH 1984): four lookups per
// sum, whatever the size of the rectangle.
class RectangleSums {
 public:
  explicit RectangleSums(const cv::Mat& plane) { cv::integral(plane, table_, CV_64F); }

  // `rectangle` must lie within the plane.
  double operator()(const cv::Rect& rectangle) const {
    const auto* above = table_.ptr<double>(rectangle.y);
    const auto* below = table_.ptr<double>(rectangle.y + rectangle.height);
    const int right = rectangle.x + rectangle.width;
    return below[right] - below[rectangle.x] - above[right] + above[rectangle.x];
  }

  cv::Size PlaneSize() const { return {table_.cols - 1, table_.rows - 1}; }

 private:
  cv::Mat table_;  // CV_64FC1, one row and one column larger than the plane
};

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_RECTANGLE_SUMS_H_
