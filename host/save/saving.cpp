#include "save/saving.h"

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "color/color_profile.h"
#include "color/profile_attachment.h"
#include "files/file_reading.h"
#include "files/private_folder.h"
#include "lumvik.h"
#include "metadata/metadata_module.h"
#include "photo/engine_call.h"
#include "save/image_export.h"
#include "save/mark.h"
#include "save/output_format.h"

namespace lumvik::host {
namespace {

std::string Content(const SafeFile& file) {
  return ReadFile(file.TemporaryPath(), std::numeric_limits<std::uintmax_t>::max());
}

void AddMetadata(const Photo& photo, const SavePlan& plan, const SafeFile& file,
                 std::vector<std::string>& warnings) {
  if (plan.metadata == LUMVIK_HOST_METADATA_NONE) return;
  MetadataOptions options;
  options.keep_position = plan.metadata == LUMVIK_HOST_METADATA_KEEP;
  options.copyright = plan.copyright;
  options.is_srgb = photo.IsRaw() || photo.Info().is_converted != 0;
  CopyMetadata(photo.OriginalPath(), photo.Shown(), file.TemporaryPath(), options, warnings);
}

void AddProfileAndMark(const SavePlan& plan, const SafeFile& file) {
  static const std::string kSrgb = ColorProfile::Srgb().Serialize();
  if (!plan.has_profile && !plan.mark) return;
  std::string image = Content(file);
  if (plan.has_profile) image = AttachProfile(std::move(image), plan.format, kSrgb);
  if (plan.mark) image = WithMark(std::move(image), plan.format, *plan.mark);
  file.Write(image);
}

void Produce(Photo& photo, const SavePlan& plan, const SafeFile& file) {
  std::vector<std::string>& warnings = photo.StartSaving();
  ExportImage(photo, plan, file);
  AddMetadata(photo, plan, file, warnings);
  AddProfileAndMark(plan, file);
}

// These move pixels away from the mask, which is made before any geometric correction.
constexpr const char* kGeometrySettings[] = {"distortion", "rotation", "perspective_h", "perspective_v",
                                             "crop.x",     "crop.y",   "crop.w",        "crop.h",
                                             "flip_h",     "flip_v"};

void RequireNoGeometry(const Settings& settings) {
  const Settings complete = Completed(settings);
  for (const char* key : kGeometrySettings) {
    if (complete.at(key) == RequireSetting(key).NeutralValue()) continue;
    throw Failure(LUMVIK_HOST_UNSUPPORTED, "a cutout does not support '" + std::string(key) +
                                               "': the mask is made before any geometric correction");
  }
}

}  // namespace

void SaveToFile(Photo& photo, const SavePlan& plan, const std::string& path) {
  SafeFile file(path, plan.overwrite, ExtensionOf(plan.format));
  Produce(photo, plan, file);
  file.Commit();
}

std::string SaveToBytes(Photo& photo, const SavePlan& plan) {
  const PrivateFolder folder;
  const SafeFile file((folder.Path() / "image").u8string(), Overwrite::kNo, ExtensionOf(plan.format));
  Produce(photo, plan, file);
  return Content(file);
}

void SaveCutout(Photo& photo, const std::string& path, const PngPlan& plan) {
  if (OutputFormatOf(path) != LUMVIK_HOST_FORMAT_PNG) {
    throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "cannot write '" + path + "': the extension is not .png");
  }
  if (!photo.HasMask()) throw Failure(LUMVIK_HOST_NOT_FOUND, photo.Shown() + " has no subject mask");
  RequireNoGeometry(photo.Values());
  SafeFile file(path, plan.overwrite, ExtensionOf(LUMVIK_HOST_FORMAT_PNG));
  photo.RenderIfStale();
  file.WriteWith([&](const std::string& temporary) {
    return CallLibrary("cannot cut out the subject of " + photo.Shown(), [&] {
             return lumvik_export_subject_png(photo.Engine(), temporary.c_str());
           }) == LUMVIK_OK;
  });
  if (plan.mark) file.Write(WithMark(Content(file), LUMVIK_HOST_FORMAT_PNG, *plan.mark));
  file.Commit();
}

}  // namespace lumvik::host
