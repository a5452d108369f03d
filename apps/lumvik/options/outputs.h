// The files that a command writes.
#ifndef LUMVIK_APPS_OPTIONS_OUTPUTS_H_
#define LUMVIK_APPS_OPTIONS_OUTPUTS_H_

#include <functional>
#include <string>
#include <vector>

namespace lumvik {

enum class OutputKind { kImage, kSettings };

struct Output {
  const char* option;
  std::string path;
  OutputKind kind;
};

// Fails before any work is done, with a message for the user: if a file cannot be written, is the photograph
// `input`, or is an image that must not be replaced; with CLI::ValidationError if two of them are the same
// file. Settings files are checked when their content is known, see files/settings_text.h.
void CheckOutputs(const std::vector<Output>& outputs, const std::string& input, bool overwrite);

// Runs `write`. A full disk is reported with the folder of `path`.
void WriteOutput(const std::string& path, const std::function<void()>& write);

}  // namespace lumvik

#endif  // LUMVIK_APPS_OPTIONS_OUTPUTS_H_
