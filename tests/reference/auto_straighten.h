// Reference auto straighten.
#ifndef LUMVIK_TESTS_REFERENCE_AUTO_STRAIGHTEN_H_
#define LUMVIK_TESTS_REFERENCE_AUTO_STRAIGHTEN_H_

#include <opencv2/core.hpp>
#include <vector>

namespace lumvik::reference {

// The angle of segments x1, y1, x2, y2, in degrees.
float Vote(const std::vector<cv::Vec4i>& segments);

// `image` is CV_16UC4.
float AutoStraighten(const cv::Mat& image);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_AUTO_STRAIGHTEN_H_
