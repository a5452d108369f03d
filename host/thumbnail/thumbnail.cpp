#include "thumbnail/thumbnail.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "color/srgb_conversion.h"
#include "files/file_reading.h"
#include "files/format.h"
#include "files/jpeg_metadata.h"
#include "metadata/metadata_module.h"
#include "photo/engine_call.h"
#include "photo/preview.h"
#include "save/mark.h"
#include "save/save_plan.h"
#include "thumbnail/raw_preview.h"

namespace lumvik::host {
namespace {

constexpr int kUsualSide = 160;
constexpr int kThumbnailQuality = 90;
constexpr int kMaxJpegSide = 65500;  // the limit of the encoder

struct ThumbnailPlan {
  int max_width = 0;  // 0: no limit
  int max_height = 0;
  lumvik_host_metadata_policy metadata = LUMVIK_HOST_METADATA_KEEP;
  std::optional<std::string> mark;

  bool HasLimit() const { return max_width != 0 || max_height != 0; }
};

ThumbnailPlan PlanOf(const lumvik_host_thumbnail_options& options) {
  return {SideOf("max_width", options.max_width), SideOf("max_height", options.max_height),
          PolicyOf(options.metadata), MarkOf(options.mark)};
}

// A thumbnail without metadata but the orientation of its pixels.
struct BareThumbnail {
  std::string jpeg;
  bool is_srgb = true;
};

// At most kMaxJpegSide pixels wide and high, so only lack of memory makes it fail.
std::string EncodeThumbnail(const cv::Mat& image) {
  try {
    std::vector<std::uint8_t> jpeg;
    if (cv::imencode(".jpg", image, jpeg, {cv::IMWRITE_JPEG_QUALITY, kThumbnailQuality})) {
      return {jpeg.begin(), jpeg.end()};
    }
  } catch (const cv::Exception&) {  // reported in the encoder's own words
    throw std::bad_alloc();
  }
  throw std::bad_alloc();
}

std::string EncodeReduced(const cv::Mat& image, int max_width, int max_height) {
  const auto limit = [](int side) { return side == 0 ? kMaxJpegSide : std::min(side, kMaxJpegSide); };
  const cv::Size size = FittingSize(image.size(), limit(max_width), limit(max_height));
  if (size == image.size()) return EncodeThumbnail(image);
  cv::Mat reduced;
  cv::resize(image, reduced, size, 0, 0, cv::INTER_AREA);
  return EncodeThumbnail(reduced);
}

std::string OfOrdinaryImage(const std::string& path, lumvik_host_format format, const ThumbnailPlan& plan,
                            const std::string& what) {
  const cv::Mat image = DecodeToSrgb(ReadFile(path, kMaxImageBytes), format);
  if (image.empty()) throw Failure(LUMVIK_HOST_DAMAGED, what + ": it is damaged");
  if (plan.HasLimit()) return EncodeReduced(image, plan.max_width, plan.max_height);
  return EncodeReduced(image, kUsualSide, kUsualSide);
}

BareThumbnail OfRawFile(const std::string& path, const ThumbnailPlan& plan, const std::string& what) {
  const RawPreview preview = ReadRawPreview(path, what);
  if (plan.HasLimit()) return {EncodeReduced(DecodePreview(preview, what), plan.max_width, plan.max_height)};
  std::string jpeg = preview.jpeg.empty() ? EncodeReduced(preview.bitmap, 0, 0) : preview.jpeg;
  constexpr std::int32_t kUpright = 1;
  if (preview.orientation != kUpright) jpeg = WithOrientation(std::move(jpeg), preview.orientation);
  return {std::move(jpeg), preview.is_srgb};
}

bool HasMetadataModule() {
  try {
    RequireMetadataModule();
    return true;
  } catch (const Failure&) {
    return false;
  }
}

}  // namespace

std::string MakeThumbnail(const std::string& path, const lumvik_host_thumbnail_options& options) {
  const ThumbnailPlan plan = PlanOf(options);
  const std::string what = "cannot read '" + path + "'";
  const lumvik_host_format format = IdentifyFormat(path, "'" + path + "'");
  BareThumbnail thumbnail;
  CallLibrary(what, [&] {
    thumbnail = format == LUMVIK_HOST_FORMAT_RAW ? OfRawFile(path, plan, what)
                                                 : BareThumbnail{OfOrdinaryImage(path, format, plan, what)};
    return LUMVIK_OK;
  });
  std::string jpeg = std::move(thumbnail.jpeg);
  if (plan.metadata != LUMVIK_HOST_METADATA_NONE && HasMetadataModule()) {
    MetadataOptions keep;
    keep.keep_position = plan.metadata == LUMVIK_HOST_METADATA_KEEP;
    keep.is_srgb = thumbnail.is_srgb;
    std::vector<std::string> ignored;  // a thumbnail is no copy of the photograph
    jpeg = WithMetadata(std::move(jpeg), path, "'" + path + "'", keep, ignored);
  }
  return plan.mark ? WithMark(std::move(jpeg), LUMVIK_HOST_FORMAT_JPEG, *plan.mark) : jpeg;
}

}  // namespace lumvik::host
