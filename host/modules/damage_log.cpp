#include "modules/damage_log.h"

#include <algorithm>
#include <exiv2/exiv2.hpp>
#include <iterator>

namespace lumvik::metadata {
namespace {

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): exiv2 hands its callback no context
thread_local Damage* current_damage = nullptr;

bool Has(const std::string& text, const char* part) {
  return text.find(part) != std::string::npos;
}

// Errors in other directories are common in good files: exiv2 does not know every maker note, and its
// contents are not kept.
bool IsAboutMakerNote(const std::string& message) {
  constexpr const char* kKeptDirectories[] = {"irectory Image", "irectory Photo", "irectory GPSInfo"};
  return Has(message, "irectory ") && std::none_of(std::begin(kKeptDirectories), std::end(kKeptDirectories),
                                                   [&](const char* kept) { return Has(message, kept); });
}

}  // namespace

DamageLog::DamageLog(Damage& damage) {
  current_damage = &damage;
}

DamageLog::~DamageLog() {
  current_damage = nullptr;
}

void DamageLog::Receive(int level, const char* message) {
  if (current_damage == nullptr) return;
  std::string text = message;
  text.erase(text.find_last_not_of(". \r\n") + 1);
  const bool is_damage = level >= Exiv2::LogMsg::error || text.rfind("Failed to decode", 0) == 0;
  if (!is_damage || IsAboutMakerNote(text)) return;
  current_damage->emplace(Has(text, "XMP") ? "XMP" : Has(text, "IPTC") ? "IPTC" : "EXIF", text);
}

}  // namespace lumvik::metadata
