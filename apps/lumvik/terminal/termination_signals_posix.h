// The signals that end the command: SIGINT, SIGTERM and SIGHUP.
#ifndef LUMVIK_APPS_TERMINAL_TERMINATION_SIGNALS_POSIX_H_
#define LUMVIK_APPS_TERMINAL_TERMINATION_SIGNALS_POSIX_H_

#include <csignal>

namespace lumvik {

// Blocks them for its lifetime, so that the command can clean up before it ends, and ignores SIGPIPE: a
// closed standard output must not end it before that either. Signals that were ignored stay ignored.
class TerminationSignals {
 public:
  TerminationSignals();
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  // For poll: readable when a signal is pending.
  int Descriptor() const { return descriptor_; }

  // The number of the pending signal, or 0.
  int Take() const;

  // For a child process: restores the previous state, but ignores SIGINT. Ctrl-C reaches every process of the
  // terminal, and it is up to the parent to end its children.
  void ResetForWorker() const;

 private:
  int descriptor_ = -1;
  sigset_t mask_before_{};
  struct sigaction pipe_before_ = {};
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_TERMINATION_SIGNALS_POSIX_H_
