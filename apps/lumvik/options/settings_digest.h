// A digest of all that determines how a photograph is developed and written.
#ifndef LUMVIK_APPS_OPTIONS_SETTINGS_DIGEST_H_
#define LUMVIK_APPS_OPTIONS_SETTINGS_DIGEST_H_

#include <cstdint>

#include "options/export.h"
#include "options/photograph.h"

namespace lumvik {

// `given` as returned by GivenSettings. Equal digests of equal photographs mean equal images, grain apart.
std::uint64_t SettingsDigest(const Photograph& photograph, const api::Settings& given,
                             const ExportOptions& how, lumvik_host_format format);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_SETTINGS_DIGEST_H_
