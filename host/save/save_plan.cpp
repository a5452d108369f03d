#include "save/save_plan.h"

#include "base/failure.h"
#include "files/file_reading.h"
#include "files/format.h"
#include "metadata/metadata_module.h"
#include "save/mark.h"
#include "save/output_format.h"

namespace lumvik::host {
namespace {

constexpr int kDefaultQuality = 90;
constexpr int kMaxQuality = 100;

Failure InvalidOption(const std::string& text) {
  return {LUMVIK_HOST_INVALID_ARGUMENT, text};
}

int QualityOf(const lumvik_host_save_options& options) {
  const int quality = options.quality == 0 ? kDefaultQuality : options.quality;
  if (quality >= 1 && quality <= kMaxQuality) return quality;
  throw InvalidOption("quality is " + std::to_string(quality) + ", which is not in 1..100");
}

int BitsOf(const lumvik_host_save_options& options, lumvik_host_format format) {
  const int usual = format == LUMVIK_HOST_FORMAT_TIFF ? 16 : 8;
  const int bits = options.bits == 0 ? usual : options.bits;
  const bool has_both = format == LUMVIK_HOST_FORMAT_PNG;
  if (bits == usual || (has_both && bits == 16)) return bits;
  throw InvalidOption("bits is " + std::to_string(bits) + "; a " + NameOfFormat(format) + " has " +
                      (has_both ? "8 or 16" : std::to_string(usual)) + " bits per channel");
}

void PlanMetadata(const lumvik_host_save_options& options, SavePlan& plan) {
  plan.metadata = PolicyOf(options.metadata);
  if (options.copyright != nullptr) plan.copyright = options.copyright;
  if (plan.metadata != LUMVIK_HOST_METADATA_NONE) {
    RequireMetadataModule();
  } else if (plan.copyright) {
    throw InvalidOption("copyright is set, but metadata is none");
  }
}

SavePlan PlanFor(const lumvik_host_save_options& options, lumvik_host_format format) {
  SavePlan plan;
  plan.format = format;
  plan.quality = QualityOf(options);
  plan.bits = BitsOf(options, format);
  plan.max_width = SideOf("max_width", options.max_width);
  plan.max_height = SideOf("max_height", options.max_height);
  plan.has_profile = options.no_profile == 0;
  plan.overwrite = OverwriteOf(options.overwrite);
  plan.mark = MarkOf(options.mark);
  PlanMetadata(options, plan);
  return plan;
}

// The format that the options state; unknown if they state none.
lumvik_host_format StatedFormat(const lumvik_host_save_options& options) {
  if (options.format != LUMVIK_HOST_FORMAT_UNKNOWN && ExtensionOf(options.format) == nullptr) {
    throw InvalidOption("format is " + std::to_string(options.format) +
                        "; JPEG, PNG and TIFF can be written");
  }
  return static_cast<lumvik_host_format>(options.format);
}

}  // namespace

int SideOf(const char* name, int side) {
  if (side < 0)
    throw InvalidOption(std::string(name) + " is " + std::to_string(side) + ", which is negative");
  return side;
}

lumvik_host_metadata_policy PolicyOf(std::int32_t metadata) {
  if (metadata < LUMVIK_HOST_METADATA_KEEP || metadata > LUMVIK_HOST_METADATA_NONE) {
    throw InvalidOption("metadata is " + std::to_string(metadata) + ", which is no policy");
  }
  return static_cast<lumvik_host_metadata_policy>(metadata);
}

Overwrite OverwriteOf(std::int32_t overwrite) {
  switch (overwrite) {
    case LUMVIK_HOST_OVERWRITE_NONE:
      return Overwrite::kNo;
    case LUMVIK_HOST_OVERWRITE_ANY:
      return Overwrite::kYes;
    case LUMVIK_HOST_OVERWRITE_MARKED:
      return Overwrite::kMarked;
    default:
      throw InvalidOption("overwrite is " + std::to_string(overwrite) + ", which is no rule");
  }
}

SavePlan PlanForFile(const lumvik_host_save_options& options, const std::string& path) {
  const lumvik_host_format stated = StatedFormat(options);
  const lumvik_host_format named = OutputFormatOf(path);
  const bool has_extension = PathOf(path).has_extension();
  if (stated == LUMVIK_HOST_FORMAT_UNKNOWN && named == LUMVIK_HOST_FORMAT_UNKNOWN) {
    throw InvalidOption("cannot write '" + path + "': the extension is not .jpg, .jpeg, .png, .tif or .tiff");
  }
  if (stated != LUMVIK_HOST_FORMAT_UNKNOWN && has_extension && stated != named) {
    throw InvalidOption("cannot write '" + path + "': the extension is not that of a " +
                        NameOfFormat(stated));
  }
  return PlanFor(options, stated == LUMVIK_HOST_FORMAT_UNKNOWN ? named : stated);
}

SavePlan PlanForBytes(const lumvik_host_save_options& options) {
  const lumvik_host_format stated = StatedFormat(options);
  if (stated == LUMVIK_HOST_FORMAT_UNKNOWN) throw InvalidOption("format is not set");
  return PlanFor(options, stated);
}

PngPlan PlanForPng(const lumvik_host_save_options& options) {
  return {options.no_profile == 0, OverwriteOf(options.overwrite), MarkOf(options.mark)};
}

}  // namespace lumvik::host
