// The option that allows existing files to be replaced.
#ifndef LUMVIK_APPS_OPTIONS_OVERWRITE_H_
#define LUMVIK_APPS_OPTIONS_OVERWRITE_H_

#include <CLI/CLI.hpp>
#include <string>

#include "lumvik_host.hpp"

namespace lumvik {

inline CLI::Option* AddOverwriteOption(CLI::App& command, bool& overwrite) {
  return command.add_flag("--overwrite", overwrite,
                          "Replace existing files, also those that lumvik did not write");
}

// Says why an existing image at this path is not replaced.
inline std::string RefusalOfForeign(const std::string& path) {
  return "'" + path + "' exists and was not written by lumvik, or was changed since; --overwrite replaces it";
}

// Existing files of others are replaced on request only.
inline lumvik_host_overwrite OverwriteRule(bool overwrite) {
  return overwrite ? LUMVIK_HOST_OVERWRITE_ANY : LUMVIK_HOST_OVERWRITE_MARKED;
}

// How to write an image. `mark` must outlive the result.
inline api::SaveOptions MarkedWith(const std::string& mark, bool overwrite) {
  api::SaveOptions options;
  options.overwrite = OverwriteRule(overwrite);
  options.mark = mark.c_str();
  return options;
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_OVERWRITE_H_
