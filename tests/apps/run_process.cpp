#include "run_process.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <memory>
#include <system_error>

namespace lumvik::test {
namespace {

void Require(int error, const char* what) {
  if (error != 0) throw std::system_error(error, std::generic_category(), what);
}

// Catches one output of the program in a nameless file, which unlike a pipe never fills up.
class Capture {
 public:
  Capture() : file_(std::tmpfile(), std::fclose) {
    if (!file_) Require(errno, "tmpfile");
  }

  int descriptor() const { return fileno(file_.get()); }

  std::string Text() const {
    std::rewind(file_.get());
    std::string text;
    for (int c = std::fgetc(file_.get()); c != EOF; c = std::fgetc(file_.get())) {
      text.push_back(static_cast<char>(c));
    }
    return text;
  }

 private:
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file_;
};

pid_t Spawn(const std::vector<std::string>& arguments, const Capture& out, const Capture& err) {
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  posix_spawn_file_actions_t actions;
  Require(posix_spawn_file_actions_init(&actions), "posix_spawn_file_actions_init");
  posix_spawn_file_actions_adddup2(&actions, out.descriptor(), STDOUT_FILENO);
  posix_spawn_file_actions_adddup2(&actions, err.descriptor(), STDERR_FILENO);
  pid_t process = 0;
  const int error = posix_spawnp(&process, argv[0], &actions, nullptr, argv.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  Require(error, argv[0]);
  return process;
}

}  // namespace

ProcessResult RunProcess(const std::vector<std::string>& arguments) {
  const Capture out;
  const Capture err;
  const pid_t process = Spawn(arguments, out, err);
  int wait_status = 0;
  while (waitpid(process, &wait_status, 0) < 0) {
    if (errno != EINTR) Require(errno, "waitpid");
  }
  const int status = WIFEXITED(wait_status) ? WEXITSTATUS(wait_status) : 128 + WTERMSIG(wait_status);
  return {status, out.Text(), err.Text()};
}

}  // namespace lumvik::test
