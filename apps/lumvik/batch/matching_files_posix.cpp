#include <glob.h>

#include <algorithm>

#include "batch/matching_files.h"

namespace lumvik {

std::vector<std::string> MatchingFiles(const std::string& pattern) {
  glob_t found = {};
  std::vector<std::string> files;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): called before any thread is started
  if (glob(pattern.c_str(), 0, nullptr, &found) == 0) {
    files.assign(found.gl_pathv, found.gl_pathv + found.gl_pathc);
  }
  globfree(&found);
  std::sort(files.begin(), files.end());  // bytewise, independent of the locale
  return files;
}

}  // namespace lumvik
