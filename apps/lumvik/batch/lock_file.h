// Files by which processes exclude one another.
#ifndef LUMVIK_APPS_BATCH_LOCK_FILE_H_
#define LUMVIK_APPS_BATCH_LOCK_FILE_H_

#include <filesystem>
#include <optional>

namespace lumvik {

// A locked file that holds the id of this process. The lock ends with the process, however that ends.
class LockFile {
 public:
  // Creates the file if necessary and locks it; nothing while another owner holds it. Where the file system
  // has no locks, everyone becomes the owner. Throws std::system_error.
  static std::optional<LockFile> Take(const std::filesystem::path& path);

  // The same for an existing file; nothing if there is none.
  static std::optional<LockFile> TakeExisting(const std::filesystem::path& path);

  LockFile(LockFile&& other) noexcept;
  LockFile& operator=(LockFile&&) = delete;
  LockFile(const LockFile&) = delete;
  LockFile& operator=(const LockFile&) = delete;
  ~LockFile();  // removes the file, unless Keep was called, and releases the lock

  bool IsExclusive() const { return is_exclusive_; }  // false where the file system has no locks

  void Keep() { is_kept_ = true; }

 private:
  LockFile(std::filesystem::path path, int descriptor, bool is_exclusive);
  static std::optional<LockFile> TakeWith(const std::filesystem::path& path, int flags);

  std::filesystem::path path_;
  int descriptor_;
  bool is_exclusive_;
  bool is_kept_ = false;
};

// The id of the process that holds the lock, or held it last; 0 if unknown.
int HolderOf(const std::filesystem::path& path);

}  // namespace lumvik

#endif  // LUMVIK_APPS_BATCH_LOCK_FILE_H_
