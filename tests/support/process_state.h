// Changes to the whole process that last as long as the object, and files that are no files.
#ifndef LUMVIK_TESTS_SUPPORT_PROCESS_STATE_H_
#define LUMVIK_TESTS_SUPPORT_PROCESS_STATE_H_

#include <sys/resource.h>

#include <cstdint>
#include <string>

namespace lumvik::test {

// A named pipe with nobody at the other end. Returns the path.
std::string MakePipe(const std::string& path);

// Ends the process when calls that must return at once have not returned after twenty seconds.
class Deadline {
 public:
  Deadline();
  ~Deadline();
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;
};

// No file can be written beyond its first `bytes`: a write that reaches further is short or fails, as on a
// full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(uint64_t bytes);
  ~FileSizeLimit();
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit previous_{};
  void (*previous_handler_)(int);
};

// The superuser is bound by file permissions like everybody else.
class OrdinaryUser {
 public:
  OrdinaryUser();
  ~OrdinaryUser();
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
};

// Collects what anything, C libraries included, writes to standard error.
class StderrCapture {
 public:
  StderrCapture();
  ~StderrCapture();
  StderrCapture(const StderrCapture&) = delete;
  StderrCapture& operator=(const StderrCapture&) = delete;

  // Ends the collection.
  std::string Take();

 private:
  void Restore();

  int file_ = -1;
  int previous_;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_PROCESS_STATE_H_
