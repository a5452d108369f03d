#include "files/photograph_walk.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>

#include "files/lower_extension.h"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

// Sorted: ordinary images read by the engine, and the RAW formats of LibRaw.
constexpr std::string_view kOrdinaryExtensions[] = {".bmp", ".jpeg", ".jpg", ".png",
                                                    ".tif", ".tiff", ".webp"};
constexpr std::string_view kRawExtensions[] = {
    ".3fr", ".ari", ".arw", ".bay", ".cap", ".cr2", ".cr3", ".crw", ".dcr", ".dcs", ".dng", ".drf", ".erf",
    ".fff", ".gpr", ".iiq", ".k25", ".kdc", ".mdc", ".mef", ".mos", ".mrw", ".nef", ".nrw", ".orf", ".pef",
    ".ptx", ".raf", ".raw", ".rw2", ".rwl", ".rwz", ".sr2", ".srf", ".srw", ".sti", ".x3f"};

// Sorted, in lower case: folders of systems, network drives and catalogs, whose images are not photographs.
constexpr std::string_view kSystemFolders[] = {
    "#recycle", "#snapshot",  "$recycle.bin", "@eadir",   "@recently-snapshot",       "@recycle",
    "__macosx", "captureone", "lost+found",   "recycler", "system volume information"};
constexpr std::string_view kSystemFolderExtensions[] = {".cocatalog", ".lrdata"};

template <std::size_t kCount>
bool IsIn(const std::string_view (&extensions)[kCount], const std::string& extension) {
  return std::binary_search(std::begin(extensions), std::end(extensions), extension);
}

bool IsPhotographName(const fs::path& path) {
  const std::string extension = LowerExtension(path);
  return IsIn(kOrdinaryExtensions, extension) || IsIn(kRawExtensions, extension);
}

bool IsHidden(const fs::path& path) {
  const std::string name = path.filename().string();
  return !name.empty() && name.front() == '.';
}

bool IsSystemFolder(const fs::path& path) {
  return IsIn(kSystemFolders, LowerAscii(path.filename().string())) ||
         IsIn(kSystemFolderExtensions, LowerExtension(path));
}

std::string Failure(const fs::path& path, const std::error_code& error) {
  return "cannot read '" + path.string() + "': " + error.message();
}

// Appends the entries of `folder`: photographs to `found`, subfolders to `folders`.
std::error_code List(const fs::path& folder, FoundPhotographs& found, std::vector<fs::path>& folders) {
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    std::error_code entry_error;
    const fs::file_status status = entry->symlink_status(entry_error);
    if (entry_error) {
      found.failures.push_back(Failure(entry->path(), entry_error));
    } else if (IsNoPhotograph(entry->path(), fs::is_directory(status))) {
      continue;
    } else if (fs::is_directory(status)) {
      folders.push_back(entry->path());
    } else if (fs::is_regular_file(status) && IsPhotographName(entry->path())) {
      found.paths.push_back(entry->path().string());
    }
  }
  return error;
}

}  // namespace

bool IsNoPhotograph(const fs::path& path, bool is_folder) {
  return IsHidden(path) || (is_folder && IsSystemFolder(path));
}

bool IsOrdinaryImageName(const std::string& path) {
  return IsIn(kOrdinaryExtensions, LowerExtension(fs::u8path(path)));
}

FoundPhotographs FindPhotographs(const std::string& folder) {
  FoundPhotographs found;
  std::vector<fs::path> folders;
  if (const std::error_code error = List(fs::u8path(folder), found, folders)) {
    throw std::runtime_error(Failure(fs::u8path(folder), error));
  }
  while (!folders.empty()) {
    const fs::path next = std::move(folders.back());
    folders.pop_back();
    if (const std::error_code error = List(next, found, folders)) {
      found.failures.push_back(Failure(next, error));
    }
  }
  std::sort(found.paths.begin(), found.paths.end());
  std::sort(found.failures.begin(), found.failures.end());
  return found;
}

}  // namespace lumvik
