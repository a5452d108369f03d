// Checks for damaged files.
#include <optional>
#include <string>

#include "api/arguments.h"
#include "api/photo_handle.h"
#include "base/text_cut.h"
#include "files/format.h"
#include "integrity/integrity_check.h"
#include "lumvik_host.h"

namespace lumvik::host {
namespace {

// Stores what is found in a file, which messages name as `shown`.
void Check(const std::string& path, lumvik_host_format format, const std::string& shown,
           lumvik_host_integrity* integrity) {
  const std::optional<Damage> damage = FindDamage(path, format);
  lumvik_host_integrity found{};
  found.format = format;
  found.is_whole = damage ? 0 : 1;
  if (damage) {
    found.missing_bytes = damage->missing_bytes;
    CopyCut(damage->reason, found.reason, sizeof(found.reason));
  }
  StoreResult(found, integrity);
  if (damage) throw Failure(LUMVIK_HOST_DAMAGED, shown + " is damaged: " + damage->reason);
}

}  // namespace
}  // namespace lumvik::host

using namespace lumvik::host;

lumvik_host_status lumvik_host_check(lumvik_host_photo* photo, lumvik_host_integrity* integrity) {
  return WithPhoto(photo, [&](const Photo& opened) {
    RequireResult(integrity, "integrity");
    const auto format = static_cast<lumvik_host_format>(opened.Info().format);
    Check(opened.OriginalPath(), format, opened.Shown(), integrity);
  });
}

lumvik_host_status lumvik_host_check_file(const char* path, lumvik_host_integrity* integrity) {
  return Guarded([&] {
    RequireArgument(path, "path");
    RequireResult(integrity, "integrity");
    const std::string shown = "'" + std::string(path) + "'";
    Check(path, IdentifyFormat(path, shown), shown, integrity);
  });
}
