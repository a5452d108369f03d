// Options for a PNG file to write.
#ifndef LUMVIK_APPS_OPTIONS_PNG_OUTPUT_H_
#define LUMVIK_APPS_OPTIONS_PNG_OUTPUT_H_

#include <CLI/CLI.hpp>
#include <string>

#include "lumvik_host.hpp"

namespace lumvik {

// `path` is a std::string or an optional one and must outlive the command.
template <typename Path>
CLI::Option* AddPngOption(CLI::App& command, const std::string& name, Path& path, const std::string& help) {
  const auto check = [](const std::string& text) {
    return api::FormatOf(text) == LUMVIK_HOST_FORMAT_PNG ? "" : "'" + text + "' does not end in .png";
  };
  return command.add_option(name, path, help)->type_name("OUT")->check(CLI::Validator(check, ""));
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_PNG_OUTPUT_H_
