#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <system_error>
#include <utility>

#include "batch/worker_process.h"
#include "terminal/termination_signals_posix.h"

namespace lumvik {
namespace {

constexpr char kThisCommand[] = "/proc/self/exe";
constexpr std::size_t kMaxOutput = 1 << 16;  // bytes
constexpr int kCannotStart = 127;            // the shell's convention
constexpr int kSignalStatus = 128;           // plus the signal's number, by the shell's convention

using ProcessClock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// With deadlines, the longest wait. When it takes much longer, this process was stopped, as by Ctrl-Z, and
// its workers probably were.
constexpr milliseconds kLongestWait(1000);

// An output of a worker, read through a pipe.
class Output {
 public:
  Output() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::system_error(errno, std::generic_category(), "pipe2");
    read_end_ = ends[0];
    write_end_ = ends[1];
  }
  ~Output() {
    Close(read_end_);
    Close(write_end_);
  }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  int ReadEnd() const { return read_end_; }  // -1 at end of file
  int WriteEnd() const { return write_end_; }
  void CloseWriteEnd() { Close(write_end_); }

  void Read() {
    std::array<char, 4096> buffer{};
    const ssize_t count = read(read_end_, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) return;
    if (count <= 0) return Close(read_end_);
    text_.append(buffer.data(), std::min(static_cast<std::size_t>(count), kMaxOutput - text_.size()));
  }

  std::string Take() { return std::move(text_); }

 private:
  static void Close(int& end) {
    if (end >= 0) close(end);
    end = -1;
  }

  int read_end_ = -1;
  int write_end_ = -1;
  std::string text_;
};

struct Process {
  Process(std::size_t id_given, unsigned slot_given) : id(id_given), slot(slot_given) {}

  const std::size_t id;
  const unsigned slot;  // selects its share of the processors
  pid_t pid = -1;
  ProcessClock::time_point deadline = ProcessClock::time_point::max();
  bool is_overdue = false;
  Output out;
  Output err;
};

// The share of a slot among `slots` of the processors available to this process.
cpu_set_t ShareOf(unsigned slot, unsigned slots) {
  cpu_set_t allowed;
  CPU_ZERO(&allowed);
  sched_getaffinity(0, sizeof allowed, &allowed);
  std::vector<std::size_t> processors;
  for (std::size_t cpu = 0; cpu < CPU_SETSIZE; ++cpu) {
    if (CPU_ISSET(cpu, &allowed)) processors.push_back(cpu);
  }
  const std::size_t count = processors.size();
  const std::size_t first = slot * count / slots;
  const std::size_t last = std::max((slot + 1) * count / slots, first + 1);
  cpu_set_t share;
  CPU_ZERO(&share);
  for (std::size_t i = first; i < last && i < count; ++i) CPU_SET(processors[i], &share);
  return share;
}

std::string NameOf(int signal) {
  // Not sigdescr_np(), which glibc has only since 2.32.
  const char* const description = strsignal(signal);  // NOLINT(concurrency-mt-unsafe): on one thread
  return "signal " + std::to_string(signal) + (description == nullptr ? "" : std::string(", ") + description);
}

}  // namespace

class Workers::Processes {
 public:
  Processes(unsigned max, std::chrono::seconds time_limit) : max_(max), time_limit_(time_limit) {}
  ~Processes() {
    for (const auto& process : running_) kill(process->pid, SIGKILL);
    for (const auto& process : running_) WaitFor(process->pid);
  }
  Processes(const Processes&) = delete;
  Processes& operator=(const Processes&) = delete;

  std::size_t Running() const { return running_.size(); }

  void Start(std::size_t id, std::vector<std::string> arguments) {
    auto process = std::make_unique<Process>(id, FreeSlot());
    arguments.insert(arguments.begin(), "lumvik");
    std::vector<char*> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    const cpu_set_t share = ShareOf(process->slot, max_);
    const pid_t parent = getpid();
    process->pid = fork();
    if (process->pid < 0) throw std::system_error(errno, std::generic_category(), "cannot start a worker");
    if (process->pid == 0) BecomeWorker(*process, share, parent, argv);
    process->out.CloseWriteEnd();
    process->err.CloseWriteEnd();
    if (time_limit_.count() > 0) process->deadline = ProcessClock::now() + time_limit_;
    running_.push_back(std::move(process));
  }

  // Nothing if none ends before `until`.
  std::optional<WorkerEnd> Wait(ProcessClock::time_point until) {
    for (;;) {
      const auto ended = std::find_if(running_.begin(), running_.end(), [](const auto& process) {
        return process->out.ReadEnd() < 0 && process->err.ReadEnd() < 0;
      });
      if (ended != running_.end()) {
        const std::unique_ptr<Process> process = std::move(*ended);
        running_.erase(ended);
        return EndOf(*process);
      }
      if (ProcessClock::now() >= until) return std::nullopt;
      ReadOutputs(until);
      KillOverdue();
    }
  }

 private:
  static int WaitFor(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) continue;
    return status;
  }

  static WorkerEnd EndOf(Process& process) {
    const int status = WaitFor(process.pid);
    WorkerEnd end;
    end.id = process.id;
    if (WIFSIGNALED(status)) {
      end.signal = NameOf(WTERMSIG(status));
    } else {
      end.status = WEXITSTATUS(status);
    }
    end.is_overdue = process.is_overdue;
    end.out = process.out.Take();
    end.err = process.err.Take();
    return end;
  }

  unsigned FreeSlot() const {
    unsigned slot = 0;
    const auto taken = [&](const auto& process) { return process->slot == slot; };
    while (std::any_of(running_.begin(), running_.end(), taken)) ++slot;
    return slot;
  }

  // In the child process.
  [[noreturn]] void BecomeWorker(const Process& process, const cpu_set_t& share, pid_t parent,
                                 const std::vector<char*>& argv) const {
    signals_.ResetForWorker();
    sched_setaffinity(0, sizeof share, &share);
    // End with the parent even if that is killed.
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent) _exit(kCannotStart);
    const int null = open("/dev/null", O_RDONLY | O_CLOEXEC);
    dup2(null, STDIN_FILENO);
    dup2(process.out.WriteEnd(), STDOUT_FILENO);
    dup2(process.err.WriteEnd(), STDERR_FILENO);
    execv(kThisCommand, argv.data());
    const std::string reason = std::generic_category().message(errno);
    const ssize_t ignored = write(STDERR_FILENO, reason.data(), reason.size());
    _exit(ignored < 0 ? kCannotStart + 1 : kCannotStart);
  }

  // Waits until a worker writes something or closes an output, or for the next deadline.
  void ReadOutputs(ProcessClock::time_point until) {
    std::vector<pollfd> polled = {{signals_.Descriptor(), POLLIN, 0}};
    std::vector<Output*> outputs;
    for (const auto& process : running_) {
      until = std::min(until, process->deadline);
      for (Output* output : {&process->out, &process->err}) {
        polled.push_back({output->ReadEnd(), POLLIN, 0});  // poll skips negative descriptors
        outputs.push_back(output);
      }
    }
    const auto begun = ProcessClock::now();
    const int ready = poll(polled.data(), polled.size(), TimeoutUntil(until));
    PostponeDeadlines(ProcessClock::now() - begun);
    if (ready < 0) return;
    if (const int signal = signals_.Take()) throw Interruption(kSignalStatus + signal);
    for (std::size_t i = 0; i < outputs.size(); ++i) {
      if (polled[i + 1].revents != 0) outputs[i]->Read();
    }
  }

  static int TimeoutUntil(ProcessClock::time_point time) {
    if (time == ProcessClock::time_point::max()) return -1;
    const milliseconds left = std::chrono::ceil<milliseconds>(time - ProcessClock::now());
    return static_cast<int>(std::clamp(left, milliseconds(0), kLongestWait).count());
  }

  void PostponeDeadlines(ProcessClock::duration waited) {
    if (waited < 2 * kLongestWait) return;
    for (const auto& process : running_) {
      if (process->deadline != ProcessClock::time_point::max()) process->deadline += waited;
    }
  }

  void KillOverdue() const {
    const auto now = ProcessClock::now();
    for (const auto& process : running_) {
      if (process->is_overdue || now < process->deadline) continue;
      process->is_overdue = true;
      process->deadline = ProcessClock::time_point::max();
      kill(process->pid, SIGKILL);
    }
  }

  const unsigned max_;
  const std::chrono::seconds time_limit_;
  const TerminationSignals signals_;
  std::vector<std::unique_ptr<Process>> running_;
};

Workers::Workers(unsigned max, std::chrono::seconds time_limit)
    : processes_(std::make_unique<Processes>(max, time_limit)) {}

Workers::~Workers() = default;

std::size_t Workers::Running() const {
  return processes_->Running();
}

void Workers::Start(std::size_t id, const std::vector<std::string>& arguments) {
  processes_->Start(id, arguments);
}

WorkerEnd Workers::Wait() {
  return *processes_->Wait(ProcessClock::time_point::max());
}

std::optional<WorkerEnd> Workers::WaitFor(milliseconds time) {
  return processes_->Wait(ProcessClock::now() + time);
}

}  // namespace lumvik
