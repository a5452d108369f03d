// Writing settings files. They carry no mark by which the command would know its own: an existing one is
// replaced only on request, or left as it is if it has the same content.
#ifndef LUMVIK_APPS_FILES_SETTINGS_TEXT_H_
#define LUMVIK_APPS_FILES_SETTINGS_TEXT_H_

#include <string>

namespace lumvik {

// Throws api::Error if the file exists with other content and `overwrite` is false.
void RequireReplaceableSettings(const std::string& path, const std::string& text, bool overwrite);

// Checks that too. Throws api::Error.
void WriteSettingsText(const std::string& path, const std::string& text, bool overwrite);

}  // namespace lumvik

#endif  // LUMVIK_APPS_FILES_SETTINGS_TEXT_H_
