// Files that appear under their names only when complete.
#ifndef LUMVIK_HOST_FILES_SAFE_FILE_H_
#define LUMVIK_HOST_FILES_SAFE_FILE_H_

#include <filesystem>
#include <string>
#include <string_view>

namespace lumvik::host {

enum class Overwrite { kNo, kYes };

// A temporary file next to its target, with the target's extension, by which writers choose the format.
// Commit renames it to the target. Without a Commit it is removed and the target stays as it was. Each
// function throws Failure.
class SafeFile {
 public:
  // The target is the file that `path` refers to, symbolic links followed. It is checked at once: its folder
  // must exist, and the file itself must be regular and writable, and absent unless `overwrite` is kYes.
  SafeFile(const std::string& path, Overwrite overwrite);
  ~SafeFile();
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;

  // UTF-8.
  std::string TemporaryPath() const { return temporary_.u8string(); }

  // Replaces the content of the temporary file.
  void Write(std::string_view bytes) const;

  void Commit();

 private:
  std::string shown_;  // the path in messages
  Overwrite overwrite_;
  std::filesystem::path target_;
  std::filesystem::path temporary_;
};

// Writes a whole file safely.
void WriteSafely(const std::string& path, std::string_view bytes, Overwrite overwrite);

// Platform functions of SafeFile.

// Creates an empty file that did not exist. Returns the error.
std::error_code CreateNewFile(const std::filesystem::path& path);

// Replaces the content of a file. Returns the error of writing or closing it.
std::error_code FillFile(const std::filesystem::path& path, std::string_view bytes);

// Renames a file. With kNo an existing target is left alone, and the error is file_exists.
std::error_code RenameFile(const std::filesystem::path& from, const std::filesystem::path& to,
                           Overwrite overwrite);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_SAFE_FILE_H_
