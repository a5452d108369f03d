// Process-wide changes that last as long as an object, and special files. What a platform does not support
// throws std::system_error; the tests that need it do not run there.
#ifndef LUMVIK_TESTS_SUPPORT_PROCESS_STATE_H_
#define LUMVIK_TESTS_SUPPORT_PROCESS_STATE_H_

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <future>
#include <string>
#include <thread>

namespace lumvik::test {

// Makes a named pipe that nobody else opens. Returns its path, which on Windows has the same file name but is
// in no folder.
std::string MakePipe(const std::string& path);

// Makes a socket that nobody listens on. Returns the path.
std::string MakeSocket(const std::string& path);

// Aborts the process when the object still exists after twenty seconds: its scope must not block.
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

// No file can grow beyond `bytes`: a write past that is short or fails, as on a full disk.
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

// Makes file permissions apply to the superuser too.
class OrdinaryUser {
 public:
  OrdinaryUser();
  ~OrdinaryUser();
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
};

// Captures standard error, including output of C libraries.
class StderrCapture {
 public:
  StderrCapture();
  ~StderrCapture();
  StderrCapture(const StderrCapture&) = delete;
  StderrCapture& operator=(const StderrCapture&) = delete;

  // Ends the capture.
  std::string Take();

 private:
  void Restore();

  int file_ = -1;
  int previous_;
};

}  // namespace lumvik::test

#endif  // LUMVIK_TESTS_SUPPORT_PROCESS_STATE_H_
