#include "info/photograph_facts.h"

#include <cmath>
#include <cstddef>
#include <iomanip>
#include <sstream>

#include "files/file_paths.h"
#include "files/mark.h"
#include "options/photograph.h"
#include "terminal/printable.h"

namespace lumvik {
namespace {

const char* NameOf(lumvik_host_format format) {
  switch (format) {
    case LUMVIK_HOST_FORMAT_RAW:
      return "camera RAW";
    case LUMVIK_HOST_FORMAT_JPEG:
      return "JPEG";
    case LUMVIK_HOST_FORMAT_PNG:
      return "PNG";
    case LUMVIK_HOST_FORMAT_TIFF:
      return "TIFF";
    case LUMVIK_HOST_FORMAT_BMP:
      return "BMP";
    case LUMVIK_HOST_FORMAT_WEBP:
      return "WebP";
    default:
      return "unknown";
  }
}

std::string Camera(const api::ExifInfo& exif) {
  const std::string make = exif.make;
  const std::string model = exif.model;
  return model.rfind(make, 0) == 0 || model.empty() ? (model.empty() ? make : model) : make + ' ' + model;
}

// "1/200 s, f/4, ISO 100, 35 mm", as far as it is known.
std::string Exposure(const api::ExifInfo& exif) {
  std::ostringstream text;
  const char* separator = "";
  const auto add = [&](bool known) -> std::ostringstream& {
    if (known) {
      text << separator;
      separator = ", ";
    }
    return text;
  };
  text << std::setprecision(3);
  constexpr float kLongest = 0.3F;  // of the times that are given as fractions
  if (exif.exposure_time > 0) {
    add(true);
    if (exif.exposure_time < kLongest) {
      text << "1/" << std::lround(1 / exif.exposure_time) << " s";
    } else {
      text << exif.exposure_time << " s";
    }
  }
  if (exif.f_number > 0) add(true) << "f/" << exif.f_number;
  if (exif.iso > 0) add(true) << "ISO " << exif.iso;
  if (exif.focal_length > 0) add(true) << exif.focal_length << " mm";
  return text.str();
}

// "2024-05-31 18:20:00", which EXIF writes with colons alone.
std::string Taken(std::string datetime) {
  constexpr std::size_t kAfterYear = 4;
  constexpr std::size_t kAfterMonth = 7;
  for (const std::size_t position : {kAfterYear, kAfterMonth}) {
    if (position < datetime.size() && datetime[position] == ':') datetime[position] = '-';
  }
  return datetime;
}

std::string WhiteBalance(const api::ExifInfo& exif) {
  if (!std::isfinite(exif.as_shot_temperature)) return "";
  std::ostringstream text;
  text << std::lround(exif.as_shot_temperature) << " K, tint " << std::showpos
       << std::lround(exif.as_shot_tint) << " as shot";
  return text.str();
}

std::string Position(const api::ExifInfo& exif) {
  if (!std::isfinite(exif.gps_latitude) || !std::isfinite(exif.gps_longitude)) return "";
  std::ostringstream text;
  text << std::fixed << std::setprecision(6) << exif.gps_latitude << ", " << exif.gps_longitude;
  return text.str();
}

nlohmann::ordered_json NullIf(bool unknown, const nlohmann::ordered_json& value) {
  return unknown ? nlohmann::ordered_json() : value;
}

}  // namespace

PhotographFacts FactsOf(const std::string& path) {
  RequireReadable(path);
  PhotographFacts facts;
  facts.path = path;
  facts.format = api::Identify(path);
  const api::Integrity integrity = api::CheckFile(path);
  if (integrity.is_whole == 0) facts.damage = integrity.reason;
  try {
    facts.size = api::ReadSize(path);
    facts.exif = api::ReadExif(path);
  } catch (const api::Error& error) {
    if (error.status() != LUMVIK_HOST_DAMAGED) throw;
    if (!facts.damage) facts.damage = error.what();
  }
  facts.settings = api::FindSidecar(path, kSettingsSidecar);
  facts.is_ours = ReadMark(path).has_value();
  return facts;
}

std::string TextOf(const PhotographFacts& facts) {
  std::ostringstream text;
  const auto line = [&](const char* name, const std::string& value) {
    constexpr int kNameColumns = 15;
    if (!value.empty()) {
      text << "  " << std::left << std::setw(kNameColumns) << name << Printable(value) << '\n';
    }
  };
  text << Printable(facts.path) << '\n';
  line("format", NameOf(facts.format));
  if (facts.size.width > 0) {
    line("size", std::to_string(facts.size.width) + 'x' + std::to_string(facts.size.height));
  }
  line("camera", Camera(facts.exif));
  line("lens", facts.exif.lens);
  line("taken", Taken(facts.exif.datetime));
  line("exposure", Exposure(facts.exif));
  line("white balance", WhiteBalance(facts.exif));
  line("position", Position(facts.exif));
  line("settings", facts.settings.value_or(""));
  line("origin", facts.is_ours ? "written by lumvik" : "");
  line("condition", facts.damage ? "damaged: " + *facts.damage : "whole");
  return text.str();
}

nlohmann::ordered_json JsonOf(const PhotographFacts& facts) {
  const api::ExifInfo& exif = facts.exif;
  const auto text = [](const char* value) { return NullIf(*value == '\0', value); };
  const auto number = [](auto value) { return NullIf(!(value > 0), value); };
  const auto degrees = [](double value) { return NullIf(!std::isfinite(value), value); };
  return {{"path", facts.path},
          {"format", NameOf(facts.format)},
          {"width", number(facts.size.width)},
          {"height", number(facts.size.height)},
          {"orientation", number(exif.orientation)},
          {"make", text(exif.make)},
          {"model", text(exif.model)},
          {"lens", text(exif.lens)},
          {"datetime", text(exif.datetime)},
          {"exposure_time", number(exif.exposure_time)},
          {"f_number", number(exif.f_number)},
          {"iso", number(exif.iso)},
          {"focal_length", number(exif.focal_length)},
          {"as_shot_temperature", degrees(exif.as_shot_temperature)},
          {"as_shot_tint", degrees(exif.as_shot_tint)},
          {"gps_latitude", degrees(exif.gps_latitude)},
          {"gps_longitude", degrees(exif.gps_longitude)},
          {"settings", NullIf(!facts.settings, facts.settings.value_or(""))},
          {"written_by_lumvik", facts.is_ours},
          {"whole", !facts.damage},
          {"damage", NullIf(!facts.damage, facts.damage.value_or(""))}};
}

}  // namespace lumvik
