#include "batch/expected_mark.h"

#include <stdexcept>

#include "options/settings_digest.h"

namespace lumvik {

std::optional<Mark> ExpectedMark(const std::string& input, const Photograph& photograph,
                                 const ExportOptions& how, lumvik_host_format format) {
  try {
    const api::Settings given = GivenSettings(photograph, SidecarOf(photograph, input));
    return Mark{api::Fingerprint(input), SettingsDigest(photograph, given, how, format)};
  } catch (const std::runtime_error&) {
    return std::nullopt;
  }
}

}  // namespace lumvik
