// The mark that the command leaves in the images it writes, by which it knows them again.
#ifndef LUMVIK_APPS_FILES_MARK_H_
#define LUMVIK_APPS_FILES_MARK_H_

#include <cstdint>
#include <optional>
#include <string>

namespace lumvik {

struct Mark {
  std::uint64_t source = 0;    // the fingerprint of the photograph
  std::uint64_t settings = 0;  // see options/settings_digest.h; 0 for images that are not developed
};

inline bool operator==(const Mark& a, const Mark& b) {
  return a.source == b.source && a.settings == b.settings;
}

std::string TextOf(const Mark& mark);

// Nothing for a file that the command did not write, or that changed since.
std::optional<Mark> ReadMark(const std::string& path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_FILES_MARK_H_
