#include "api_test.h"

#include <functional>
#include <limits>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <sstream>
#include <string_view>

namespace lumvik::test {
namespace {

std::string Digest(const cv::Mat& image) {
  if (image.empty()) return "none";
  const cv::Mat packed = image.isContinuous() ? image : image.clone();
  const std::string_view bytes(reinterpret_cast<const char*>(packed.data),
                               packed.total() * packed.elemSize());
  std::ostringstream text;
  text << image.cols << "x" << image.rows << " type " << image.type() << " #"
       << std::hash<std::string_view>()(bytes);
  return text.str();
}

// With enough digits to distinguish any two floats.
std::ostringstream ExactStream() {
  std::ostringstream out;
  out.precision(std::numeric_limits<float>::max_digits10);
  return out;
}

}  // namespace

ContextPtr CreateContext() {
  return ContextPtr(lumvik_create_context());
}

cv::Mat SmallPicture() {
  cv::Mat picture(32, 48, CV_8UC3);
  for (int y = 0; y < picture.rows; ++y) {
    for (int x = 0; x < picture.cols; ++x) picture.at<cv::Vec3b>(y, x) = cv::Vec3i(5 * x, 7 * y, 3 * (x + y));
  }
  return picture;
}

cv::Mat Widened(const cv::Mat& picture) {
  cv::Mat wide;
  picture.convertTo(wide, CV_16U, 257);
  return wide;
}

// The structured binding names every field, so that a new one does not compile until it is added here.
std::string Describe(const Adjustments& adjustments) {
  const auto& [exposure, brightness, contrast, highlights, shadows, whites, blacks, temperature, tint,
               saturation, vibrance, sharpening_amount, sharpening_radius, sharpening_threshold, nr_luminance,
               nr_color, clarity, texture, dehaze, tone_curves, hsl, split_toning, distortion, ca_correction,
               lens_vignette, defringe, crop, rotation, perspective_h, perspective_v, flip_h, flip_v,
               vignette_amount, vignette_midpoint, vignette_roundness, grain_amount, grain_size] =
      adjustments;
  std::ostringstream out = ExactStream();
  out << "exposure " << exposure << "\nbrightness " << brightness << "\ncontrast " << contrast
      << "\nhighlights " << highlights << "\nshadows " << shadows << "\nwhites " << whites << "\nblacks "
      << blacks << "\ntemperature " << temperature << "\ntint " << tint << "\nsaturation " << saturation
      << "\nvibrance " << vibrance << "\nsharpening " << sharpening_amount << " " << sharpening_radius << " "
      << sharpening_threshold << "\nnoise reduction " << nr_luminance << " " << nr_color << "\nclarity "
      << clarity << "\ntexture " << texture << "\ndehaze " << dehaze;
  for (const ToneCurve& curve : tone_curves) {
    out << "\ntone curve";
    for (const CurvePoint& point : curve) out << " (" << point.x << ", " << point.y << ")";
  }
  for (const HslBand& band : hsl)
    out << "\nhsl " << band.hue << " " << band.saturation << " " << band.luminance;
  out << "\nhighlight tone " << split_toning.highlight_hue << " " << split_toning.highlight_saturation
      << "\nshadow tone " << split_toning.shadow_hue << " " << split_toning.shadow_saturation << "\nbalance "
      << split_toning.balance << "\ndistortion " << distortion << "\nca " << ca_correction
      << "\nlens vignette " << lens_vignette << "\ndefringe " << defringe << "\ncrop " << crop.x << " "
      << crop.y << " " << crop.w << " " << crop.h << "\nrotation " << rotation << "\nperspective "
      << perspective_h << " " << perspective_v << "\nflip " << flip_h << " " << flip_v << "\nvignette "
      << vignette_amount << " " << vignette_midpoint << " " << vignette_roundness << "\ngrain "
      << grain_amount << " " << grain_size << "\n";
  return out.str();
}

std::string Describe(const ExifInfo& info) {
  std::ostringstream out = ExactStream();
  out << "make " << info.make << "\nmodel " << info.model << "\nlens " << info.lens << "\nfocal length "
      << info.focal_length << "\nf-number " << info.f_number << "\nexposure time " << info.exposure_time
      << "\niso " << info.iso << "\ntime " << info.datetime << "\nsize " << info.width << "x" << info.height
      << "\norientation " << info.orientation << "\nreserved " << info.reserved << "\nposition "
      << info.gps_latitude << " " << info.gps_longitude << "\n";
  return out.str();
}

std::string Describe(const EngineContext& context) {
  const DecodedImage& decoded = context.decoded;
  std::ostringstream out = ExactStream();
  out << "decoded " << Digest(decoded.image) << " " << decoded.width << "x" << decoded.height << " "
      << decoded.iso_speed << " " << decoded.shutter << " " << decoded.aperture << " " << decoded.focal_len
      << " " << decoded.make << " " << decoded.model << " " << decoded.orientation << " " << decoded.path
      << " " << decoded.error << "\nsource " << Digest(context.source) << "\nrendered "
      << (context.render_valid ? Digest(context.rendered) : "stale") << "\nlast error " << context.last_error
      << "\npath " << context.source_path << "\nmask " << Digest(context.mask) << " " << context.mask_valid
      << "\nblur " << context.bg_blur << "\n"
      << Describe(context.adjustments);
  return out.str();
}

std::string ApiTest::WritePicture(const std::string& name, const cv::Mat& picture) const {
  EXPECT_TRUE(cv::imwrite(Path(name), picture));
  return Path(name);
}

std::string ApiTest::WriteRaw(const std::string& name, const RawOptions& options,
                              const cv::Mat& picture) const {
  cv::Mat rgb;
  cv::cvtColor(picture, rgb, cv::COLOR_BGR2RGB);
  return WriteBytes(Path(name), MakeRawFile(rgb, options));
}

cv::Mat ApiTest::Exported(EngineContext* context) const {
  EXPECT_EQ(lumvik_export_png(context, Path("exported.png").c_str(), 16), LUMVIK_OK)
      << lumvik_last_error(context);
  return cv::imread(Path("exported.png"), cv::IMREAD_UNCHANGED);
}

void ApiTest::LoadNeutral() const {
  ASSERT_EQ(lumvik_load_arw(ctx(), WritePicture("neutral.png").c_str(), 1), LUMVIK_OK) << LastError();
  lumvik_set_temperature(ctx(), 6500);
}

}  // namespace lumvik::test
