// The times of a file.
#ifndef LUMVIK_APPS_FILES_FILE_TIMES_H_
#define LUMVIK_APPS_FILES_FILE_TIMES_H_

#include <memory>
#include <string>

namespace lumvik {

// When a file was modified and, where the platform allows it to be set, accessed. Both functions throw
// std::runtime_error with a message for the user.
class FileTimes {
 public:
  explicit FileTimes(const std::string& path);
  ~FileTimes();
  FileTimes(const FileTimes&) = delete;
  FileTimes& operator=(const FileTimes&) = delete;

  // Gives another file these times.
  void ApplyTo(const std::string& path) const;

 private:
  struct Times;
  std::unique_ptr<Times> times_;
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_FILES_FILE_TIMES_H_
