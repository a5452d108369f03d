// Options for a settings file to write.
#ifndef LUMVIK_APPS_OPTIONS_SETTINGS_OUTPUT_H_
#define LUMVIK_APPS_OPTIONS_SETTINGS_OUTPUT_H_

#include <CLI/CLI.hpp>
#include <filesystem>
#include <optional>
#include <string>

namespace lumvik {

inline constexpr char kSettingsExtension[] = ".json";
inline constexpr char kXmpExtension[] = ".xmp";

// `path` must outlive the command. Requiring the extension keeps a slip from overwriting a photograph.
inline CLI::Option* AddSettingsOption(CLI::App& command, const std::string& name,
                                      std::optional<std::string>& path, const std::string& help,
                                      const std::string& extension = kSettingsExtension) {
  const auto check = [extension](const std::string& text) {
    const bool known = std::filesystem::u8path(text).extension() == extension;
    return known ? "" : "'" + text + "' does not end in " + extension;
  };
  return command.add_option(name, path, help)->type_name("FILE")->check(CLI::Validator(check, ""));
}

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_SETTINGS_OUTPUT_H_
