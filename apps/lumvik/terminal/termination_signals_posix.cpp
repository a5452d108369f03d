#include "terminal/termination_signals_posix.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <initializer_list>
#include <system_error>

namespace lumvik {
namespace {

struct sigaction Ignore() {
  struct sigaction action = {};
  action.sa_handler = SIG_IGN;
  return action;
}

}  // namespace

TerminationSignals::TerminationSignals() {
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction action = {};
    sigaction(signal, nullptr, &action);
    if (action.sa_handler != SIG_IGN) sigaddset(&held, signal);
  }
  descriptor_ = signalfd(-1, &held, SFD_CLOEXEC | SFD_NONBLOCK);
  if (descriptor_ < 0) throw std::system_error(errno, std::generic_category(), "cannot wait for signals");
  pthread_sigmask(SIG_BLOCK, &held, &mask_before_);
  const struct sigaction ignore = Ignore();
  sigaction(SIGPIPE, &ignore, &pipe_before_);
}

TerminationSignals::~TerminationSignals() {
  sigaction(SIGPIPE, &pipe_before_, nullptr);
  pthread_sigmask(SIG_SETMASK, &mask_before_, nullptr);
  close(descriptor_);
}

int TerminationSignals::Take() const {
  signalfd_siginfo info = {};
  return read(descriptor_, &info, sizeof info) == sizeof info ? static_cast<int>(info.ssi_signo) : 0;
}

void TerminationSignals::ResetForWorker() const {
  const struct sigaction ignore = Ignore();
  sigaction(SIGINT, &ignore, nullptr);
  sigaction(SIGPIPE, &pipe_before_, nullptr);
  pthread_sigmask(SIG_SETMASK, &mask_before_, nullptr);
}

}  // namespace lumvik
