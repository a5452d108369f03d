// Files that appear under their names only when complete.
#ifndef LUMVIK_HOST_FILES_SAFE_FILE_H_
#define LUMVIK_HOST_FILES_SAFE_FILE_H_

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>

namespace lumvik::host {

// Which existing files may be replaced; with kMarked those with an intact mark.
enum class Overwrite { kNo, kMarked, kYes };
enum class WriteMode { kReplace, kAppend };

// A temporary file next to its target, with an extension by which writers choose the format.
// Commit renames it to the target. Without a Commit it is removed and the target stays as it was. Each
// function throws Failure.
class SafeFile {
 public:
  // The target is the file that `path` refers to, symbolic links followed. It is checked at once: its folder
  // must exist, and the file itself must be regular and writable, and absent unless `overwrite` allows to
  // replace it. The temporary file has the extension of the target, or the given one.
  SafeFile(const std::string& path, Overwrite overwrite, const char* extension = nullptr);
  ~SafeFile();
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;

  // UTF-8.
  std::string TemporaryPath() const { return temporary_.u8string(); }

  // Replaces the content of the temporary file.
  void Write(std::string_view bytes) const;

  // Lets `writer` replace the content. It returns false if writing failed for a reason it does not know, such
  // as a full disk; the reason is then found by writing more.
  void WriteWith(const std::function<bool(const std::string& temporary_path)>& writer) const;

  // Checks again that the target may be replaced. One that did not exist before is replaced with kYes only.
  void Commit();

 private:
  bool MayReplaceTarget() const;
  void Fill(std::string_view bytes, WriteMode mode) const;

  std::string shown_;  // the path in messages
  Overwrite overwrite_;
  std::filesystem::path target_;
  bool target_exists_;  // at the construction
  std::filesystem::path temporary_;
};

// Writes a whole file safely.
void WriteSafely(const std::string& path, std::string_view bytes, Overwrite overwrite);

// Platform functions of SafeFile.

// Creates an empty file that did not exist. Returns the error.
std::error_code CreateNewFile(const std::filesystem::path& path);

// Writes to an existing file. A file-size limit is an error, not a signal that ends the process. Returns the
// error of writing or closing it.
std::error_code FillFile(const std::filesystem::path& path, std::string_view bytes,
                         WriteMode mode = WriteMode::kReplace);

// The same for other code that writes, in this thread.
void WithoutFileSizeSignal(const std::function<void()>& call);

// Renames a file. Unless it `replaces` an existing target, that is left alone, and the error is file_exists.
std::error_code RenameFile(const std::filesystem::path& from, const std::filesystem::path& to, bool replaces);

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_FILES_SAFE_FILE_H_
