// The load of a photograph's full quality while its proxy is shown.
#ifndef LUMVIK_HOST_PHOTO_BACKGROUND_LOAD_H_
#define LUMVIK_HOST_PHOTO_BACKGROUND_LOAD_H_

#include <condition_variable>
#include <mutex>

#include "base/failure.h"
#include "base/text_cut.h"

namespace lumvik::host {

// For any thread.
class BackgroundLoad {
 public:
  void Begin();
  // `status` and `text` are those of the failure, if it failed.
  void End(Status status, const TextBuffer& text);

  // Another load has replaced this one.
  void Abandon();
  // True until the load has ended or was abandoned.
  bool IsWanted() const;

  // Waits until it is not wanted any more, at most `milliseconds`; a negative value waits without limit.
  // Throws Failure if it failed or takes longer.
  void Wait(int milliseconds);

  // Waits until no thread loads.
  void WaitForEnd();

 private:
  bool IsWantedLocked() const { return is_running_ && !is_abandoned_; }

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  bool is_running_ = false;
  bool is_abandoned_ = false;
  Status status_ = LUMVIK_HOST_OK;
  TextBuffer failure_{};
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_BACKGROUND_LOAD_H_
