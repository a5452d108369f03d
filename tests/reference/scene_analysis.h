// Reference scene analysis.
#ifndef LUMVIK_TESTS_REFERENCE_SCENE_ANALYSIS_H_
#define LUMVIK_TESTS_REFERENCE_SCENE_ANALYSIS_H_

#include <array>
#include <opencv2/core.hpp>

namespace lumvik::reference {

// The suggestions for a CV_16UC4 image.
std::array<float, 32> AnalyzeScene(const cv::Mat& image);

}  // namespace lumvik::reference

#endif  // LUMVIK_TESTS_REFERENCE_SCENE_ANALYSIS_H_
