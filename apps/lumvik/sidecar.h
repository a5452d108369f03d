// Files that stand beside a photograph and belong to it by their name.
#ifndef LUMVIK_APPS_SIDECAR_H_
#define LUMVIK_APPS_SIDECAR_H_

#include <optional>
#include <string>

namespace lumvik {

// The ending of a photograph's own settings file.
inline constexpr char kSettingsSidecar[] = ".lumvik.json";

// For "a/IMG.ARW" and the ending ".xmp": "a/IMG.ARW.xmp", else "a/IMG.xmp", which may serve several
// photographs taken at once; none where neither is there.
std::optional<std::string> FindSidecar(const std::string& photograph, const std::string& ending);

}  // namespace lumvik

#endif  // LUMVIK_APPS_SIDECAR_H_
