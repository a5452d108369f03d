// Changes to the whole process that last as long as the object, and files that are no files. What a platform
// cannot do throws std::system_error there: the tests in question are not run on it.
#ifndef LUMVIK_TESTS_SUPPORT_PROCESS_STATE_H_
#define LUMVIK_TESTS_SUPPORT_PROCESS_STATE_H_

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>

namespace lumvik::test {

// A named pipe with nobody at the other end. Returns its path: on Windows, where pipes are in no folder,
// another one with the same file name.
std::string MakePipe(const std::string& path);

// A socket that nobody listens at. Returns the path.
std::string MakeSocket(const std::string& path);

// Ends the process when calls that must return at once have not returned after twenty seconds.
class Deadline {
 public:
  Deadline()
      : watch_([over = over_.get_future()] {
          if (over.wait_for(std::chrono::seconds(20)) == std::future_status::timeout) std::abort();
        }) {}
  ~Deadline() {
    over_.set_value();
    watch_.join();
  }
  Deadline(const Deadline&) = delete;
  Deadline& operator=(const Deadline&) = delete;

 private:
  std::promise<void> over_;
  std::thread watch_;
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
  uint64_t previous_ = 0;
  void (*previous_handler_)(int) = nullptr;
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
