#include "save/saving.h"

#include <limits>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "color/profile_attachment.h"
#include "files/file_reading.h"
#include "files/format.h"
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

std::string AddMetadata(std::string image, const Photo& photo, const SavePlan& plan,
                        std::vector<std::string>& warnings) {
  if (plan.metadata == LUMVIK_HOST_METADATA_NONE) return image;
  MetadataOptions options;
  options.keep_position = plan.metadata == LUMVIK_HOST_METADATA_KEEP;
  options.copyright = plan.copyright;
  options.is_srgb = photo.Colors().is_srgb;
  return WithMetadata(std::move(image), photo.OriginalPath(), photo.Shown(), options, warnings);
}

std::string AddProfile(std::string image, const Photo& photo, const SavePlan& plan,
                       std::vector<std::string>& warnings) {
  if (!plan.has_profile) return image;
  const std::string& icc = photo.Colors().icc;
  const std::size_t limit = MaxProfileBytes(plan.format);
  if (icc.size() <= limit) return AttachProfile(std::move(image), plan.format, icc);
  warnings.push_back("the color profile of " + photo.Shown() + " was left out: it has " +
                     std::to_string(icc.size()) + " bytes, and a " + NameOfFormat(plan.format) +
                     " holds at most " + std::to_string(limit));
  return image;
}

std::string AddMark(std::string image, lumvik_host_format format, const std::optional<std::string>& mark) {
  return mark ? WithMark(std::move(image), format, *mark) : image;
}

void Produce(Photo& photo, const SavePlan& plan, const SafeFile& file) {
  std::vector<std::string>& warnings = photo.StartSaving();
  ExportImage(photo, plan, file);
  if (plan.metadata == LUMVIK_HOST_METADATA_NONE && !plan.has_profile && !plan.mark) return;
  std::string image = AddMetadata(Content(file), photo, plan, warnings);
  image = AddProfile(std::move(image), photo, plan, warnings);
  file.Write(AddMark(std::move(image), plan.format, plan.mark));
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
  if (plan.has_profile || plan.mark) {
    std::string png = Content(file);
    if (plan.has_profile) png = AttachProfile(std::move(png), LUMVIK_HOST_FORMAT_PNG, photo.Colors().icc);
    file.Write(AddMark(std::move(png), LUMVIK_HOST_FORMAT_PNG, plan.mark));
  }
  file.Commit();
}

}  // namespace lumvik::host
