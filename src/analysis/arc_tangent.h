// The arc tangent with the same bits everywhere.
#ifndef LUMVIK_ANALYSIS_ARC_TANGENT_H_
#define LUMVIK_ANALYSIS_ARC_TANGENT_H_

namespace lumvik {

// atan2f(y, x) of finite whole numbers, as glibc computes it up to 2.40. Other C libraries round some results
// differently, which would make suggested angles depend on the system. A zero has no sign.
float ArcTangent(float y, float x);

}  // namespace lumvik

#endif  // LUMVIK_ANALYSIS_ARC_TANGENT_H_
