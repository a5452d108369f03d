// The signals by which a user ends the command.
#ifndef LUMVIK_APPS_TERMINATION_SIGNALS_POSIX_H_
#define LUMVIK_APPS_TERMINATION_SIGNALS_POSIX_H_

#include <csignal>

namespace lumvik {

// Holds them back, so that the command is asked to end rather than ended, and ignores SIGPIPE: a reader of
// standard output that leaves early must not end the command before it has tidied up. A signal that was
// ignored before stays so.
class TerminationSignals {
 public:
  TerminationSignals();
  ~TerminationSignals();
  TerminationSignals(const TerminationSignals&) = delete;
  TerminationSignals& operator=(const TerminationSignals&) = delete;

  // For poll: can be read when a signal has come.
  int Descriptor() const { return descriptor_; }

  // The number of the signal that has come, or 0.
  int Take() const;

  // For a new process: everything is as it was, but Ctrl-C in a terminal, which goes to all processes there,
  // is left to the one that started it.
  void ResetForWorker() const;

 private:
  int descriptor_ = -1;
  sigset_t mask_before_{};
  struct sigaction pipe_before_ = {};
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINATION_SIGNALS_POSIX_H_
