// Files next to a photograph that belong to it by name.
#ifndef LUMVIK_HOST_SETTINGS_SIDECAR_H_
#define LUMVIK_HOST_SETTINGS_SIDECAR_H_

#include <optional>
#include <string>

namespace lumvik::host {

// For "a/IMG.ARW" and ".xmp": "a/IMG.ARW.xmp", else "a/IMG.xmp", which a RAW file and its JPEG can share;
// none when neither exists.
std::optional<std::string> FindSidecar(const std::string& photograph, const std::string& extension);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_SIDECAR_H_
