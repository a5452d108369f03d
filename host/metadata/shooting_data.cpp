#include "metadata/shooting_data.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "base/failure.h"
#include "image/exif_info.h"
#include "metadata/metadata_module.h"
#include "metadata/raw_facts.h"

namespace lumvik::host {
namespace {

constexpr std::int32_t kUpright = 1;  // EXIF orientations
constexpr std::int32_t kLastOrientation = 8;

template <std::size_t kSize>
void FillIfEmpty(char (&field)[kSize], const std::string& text) {
  if (field[0] != '\0') return;
  const std::size_t size = std::min(text.size(), kSize - 1);
  std::memcpy(field, text.data(), size);
  field[size] = '\0';
}

void FillIfUnknown(double& coordinate, double degrees) {
  if (std::isnan(coordinate)) coordinate = degrees;
}

lumvik_host_exif HostExifOf(const ExifInfo& reported) {
  lumvik_host_exif exif{};
  exif.struct_size = sizeof(exif);
  exif.iso = reported.iso;
  FillIfEmpty(exif.make, reported.make);
  FillIfEmpty(exif.model, reported.model);
  FillIfEmpty(exif.lens, reported.lens);
  FillIfEmpty(exif.datetime, reported.datetime);
  exif.focal_length = reported.focal_length;
  exif.f_number = reported.f_number;
  exif.exposure_time = reported.exposure_time;
  exif.orientation = std::clamp(reported.orientation, kUpright, kLastOrientation);
  if (exif.orientation != reported.orientation) exif.orientation = kUpright;
  exif.width = reported.width;
  exif.height = reported.height;
  exif.gps_latitude = reported.gps_latitude;
  exif.gps_longitude = reported.gps_longitude;
  exif.as_shot_temperature = std::numeric_limits<double>::quiet_NaN();
  exif.as_shot_tint = std::numeric_limits<double>::quiet_NaN();
  return exif;
}

lumvik_host_exif CompleteRawData(const ExifInfo& reported, const std::optional<RawFacts>& facts,
                                 const std::string& path) {
  lumvik_host_exif exif = HostExifOf(reported);
  if (facts) {
    // The engine reports the size in memory, which depends on the quality, and LibRaw's own orientation code.
    exif.width = facts->width;
    exif.height = facts->height;
    exif.orientation = facts->orientation;
    FillIfEmpty(exif.lens, facts->lens);
    FillIfEmpty(exif.datetime, facts->datetime);
    FillIfUnknown(exif.gps_latitude, facts->latitude);
    FillIfUnknown(exif.gps_longitude, facts->longitude);
    exif.as_shot_temperature = facts->as_shot.temperature;
    exif.as_shot_tint = facts->as_shot.tint;
  }
  if (exif.lens[0] == '\0' || exif.datetime[0] == '\0') {
    const ModuleExif more = ReadModuleExif(path);
    FillIfEmpty(exif.lens, more.lens);
    FillIfEmpty(exif.datetime, more.datetime);
  }
  return exif;
}

}  // namespace

lumvik_host_exif CompleteShootingData(const ExifInfo& reported, const std::string& path, bool is_raw) {
  return is_raw ? CompleteRawData(reported, ReadRawFacts(path), path) : HostExifOf(reported);
}

lumvik_host_exif ReadShootingData(const std::string& path, lumvik_host_format format) {
  ExifInfo reported{};
  const bool has_exif = ReadExifFile(path, reported);
  if (format != LUMVIK_HOST_FORMAT_RAW) return HostExifOf(reported);
  const std::optional<RawFacts> facts = ReadRawFacts(path);
  if (!facts) throw Failure(LUMVIK_HOST_DAMAGED, "cannot read '" + path + "': it is damaged");
  return CompleteRawData(has_exif ? reported : facts->basic, facts, path);
}

}  // namespace lumvik::host
