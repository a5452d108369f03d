#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <memory>
#include <system_error>

#include "run_process.h"

namespace lumvik::test {
namespace {

void Require(int error, const char* what) {
  if (error != 0) throw std::system_error(error, std::generic_category(), what);
}

pid_t Spawn(const std::vector<std::string>& arguments, int out, int err) {
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  Require(posix_spawn_file_actions_init(&actions), "posix_spawn_file_actions_init");
  posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, err, STDERR_FILENO);
  // Shells make background processes ignore SIGINT; restore the default.
  posix_spawnattr_t attributes;
  Require(posix_spawnattr_init(&attributes), "posix_spawnattr_init");
  sigset_t interrupt;
  sigemptyset(&interrupt);
  sigaddset(&interrupt, SIGINT);
  posix_spawnattr_setsigdefault(&attributes, &interrupt);
  posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
  pid_t process = 0;
  const int error = posix_spawnp(&process, argv[0], &actions, &attributes, argv.data(), environ);
  posix_spawnattr_destroy(&attributes);
  posix_spawn_file_actions_destroy(&actions);
  Require(error, argv[0]);
  return process;
}

}  // namespace

// Captures an output in an unnamed file, which unlike a pipe never fills up.
class RunningProcess::Capture {
 public:
  Capture() : file_(std::tmpfile(), std::fclose) {
    if (!file_) Require(errno, "tmpfile");
  }

  int descriptor() const { return fileno(file_.get()); }

  std::string Text() const {
    // pread leaves the file position alone, at which the program still writes.
    std::string text;
    std::array<char, 4096> part{};
    const auto read_part = [&] {
      return pread(descriptor(), part.data(), part.size(), static_cast<off_t>(text.size()));
    };
    for (ssize_t count = read_part(); count > 0; count = read_part()) {
      text.append(part.data(), static_cast<std::size_t>(count));
    }
    return text;
  }

 private:
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

RunningProcess::RunningProcess(const std::vector<std::string>& arguments)
    : out_(std::make_unique<Capture>()),
      err_(std::make_unique<Capture>()),
      id_(Spawn(arguments, out_->descriptor(), err_->descriptor())) {}

RunningProcess::~RunningProcess() = default;

std::string RunningProcess::OutSoFar() const {
  return out_->Text();
}

std::string RunningProcess::ErrSoFar() const {
  return err_->Text();
}

ProcessResult RunningProcess::Wait() {
  int wait_status = 0;
  while (waitpid(id_, &wait_status, 0) < 0) {
    if (errno != EINTR) Require(errno, "waitpid");
  }
  const int status = WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : 128 + WTERMSIG(wait_status);
  return {status, out_->Text(), err_->Text()};
}

ProcessResult RunProcess(const std::vector<std::string>& arguments) {
  return RunningProcess(arguments).Wait();
}

std::vector<std::string> Unprivileged(const std::vector<std::string>& arguments) {
  if (geteuid() != 0) return arguments;
  std::vector<std::string> bound = {"setpriv", "--bounding-set=-dac_override,-dac_read_search"};
  bound.insert(bound.end(), arguments.begin(), arguments.end());
  return bound;
}

}  // namespace lumvik::test
