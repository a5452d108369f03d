#include "files/settings_text.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "lumvik_host.hpp"

namespace lumvik {
namespace {

bool HasContent(const std::filesystem::path& path, const std::string& text) {
  std::error_code error;
  if (std::filesystem::file_size(path, error) != text.size() || error) return false;
  std::ifstream file(path, std::ios::binary);
  const std::string content((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  return content == text;
}

}  // namespace

void RequireReplaceableSettings(const std::string& path, const std::string& text, bool overwrite) {
  const std::filesystem::path file = std::filesystem::u8path(path);
  std::error_code error;
  if (overwrite || !std::filesystem::exists(file, error) || HasContent(file, text)) return;
  throw api::Error(LUMVIK_HOST_EXISTS, "'" + path + "' exists with other content; --overwrite replaces it");
}

void WriteSettingsText(const std::string& path, const std::string& text, bool overwrite) {
  RequireReplaceableSettings(path, text, overwrite);
  if (HasContent(std::filesystem::u8path(path), text)) return;
  api::WriteFile(path, text.data(), text.size(),
                 overwrite ? LUMVIK_HOST_OVERWRITE_ANY : LUMVIK_HOST_OVERWRITE_NONE);
}

}  // namespace lumvik
