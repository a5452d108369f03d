// The option that selects a format where no extension does.
#ifndef LUMVIK_APPS_OPTIONS_OUTPUT_FORMAT_H_
#define LUMVIK_APPS_OPTIONS_OUTPUT_FORMAT_H_

#include <CLI/CLI.hpp>
#include <string>

#include "lumvik_host.hpp"

namespace lumvik {

// `name` is a std::string or an optional one.
template <typename Name>
CLI::Option* AddFormatOption(CLI::App& command, Name& name, const std::string& help) {
  const auto check = [](const std::string& text) {
    const bool known = text == "jpg" || text == "png" || text == "tiff";
    return known ? "" : "'" + text + "' is not jpg, png or tiff";
  };
  return command.add_option("--format", name, help)->type_name("FORMAT")->check(CLI::Validator(check, ""));
}

inline lumvik_host_format FormatNamed(const std::string& name) {
  return api::FormatOf("file." + name);
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_OUTPUT_FORMAT_H_
