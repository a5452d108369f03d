// Gaussian kernels as cv::GaussianBlur makes them for float images.
#ifndef LUMVIK_PIPELINE_GAUSSIAN_H_
#define LUMVIK_PIPELINE_GAUSSIAN_H_

#include "pipeline/symmetric_kernel.h"

namespace lumvik {

class Gaussian {
 public:
  // From here on a blur is made on a coarse grid (WideGaussian) rather than directly.
  static constexpr double kMinWideSigma = 16.0;
  // Larger sigmas count as this: a kernel far wider than the image gives its mean everywhere.
  static constexpr double kMaxSigma = 4096.0;

  // `sigma` in pixels; the kernel size follows from it. Throws cv::Exception unless sigma is positive.
  static Gaussian OfSigma(double sigma);

  // `size` of the kernel in pixels, odd; sigma follows from it.
  static Gaussian OfSize(int size);

  double Sigma() const;
  int Radius() const { return radius_; }  // of the kernel, in pixels
  bool IsWide() const { return Sigma() >= kMinWideSigma; }
  SymmetricKernel Kernel() const;

 private:
  Gaussian(int radius, double given_sigma) : radius_(radius), given_sigma_(given_sigma) {}

  int radius_;
  double given_sigma_;  // 0 if it follows from the size
};

}  // namespace lumvik

#endif  // LUMVIK_PIPELINE_GAUSSIAN_H_
