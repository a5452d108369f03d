// Posted renders of a photo: one waits at most, and one worker thread takes them.
#ifndef LUMVIK_HOST_PHOTO_RENDER_QUEUE_H_
#define LUMVIK_HOST_PHOTO_RENDER_QUEUE_H_

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/failure.h"
#include "base/text_cut.h"
#include "lumvik_host.h"
#include "photo/current_settings.h"

namespace lumvik::host {

struct PostedRender {
  std::uint64_t ticket = 0;                  // set by the queue
  std::shared_ptr<const Settings> settings;  // null: the current ones
  lumvik_host_preview_options options{};
  lumvik_host_callback callback = nullptr;
  void* user = nullptr;
};

// For any thread. Callbacks are called without a lock held.
class RenderQueue {
 public:
  // Replaces the waiting render, which becomes stale. The settings become the current ones. The first post
  // starts the worker. Returns the ticket. Throws Failure, std::system_error, std::bad_alloc.
  std::uint64_t Post(PostedRender post, CurrentSettings* current,
                     const std::function<std::thread()>& start_worker);

  // Waits until a render has ended and its callback has returned. In a callback, it does not wait for
  // callbacks. Throws Failure unless the render succeeded.
  void Wait(std::uint64_t ticket, int milliseconds);

  // Drops the waiting render.
  void Cancel();

  // Drops the waiting render and ends the worker. Waits for the worker and for callbacks, except in a
  // callback.
  void Close();

  // For the worker.

  // Waits for a post. Returns false once the queue is closed.
  bool AwaitPost();
  // The waiting render, unless it was dropped.
  std::optional<PostedRender> Take();
  // Calls back; `frame` has the ticket of the post.
  void Finish(const PostedRender& post, const lumvik_host_frame& frame);
  void EndWorker();

 private:
  struct Progress {
    bool has_ended = false;
    bool is_calling_back = false;
    std::uint8_t status = LUMVIK_HOST_OK;
  };

  Progress& ProgressOf(std::uint64_t ticket) { return progress_[static_cast<std::size_t>(ticket - 1)]; }
  std::optional<PostedRender> Drop(Status status);
  void MarkEnded(const PostedRender& post, Status status);
  void CallBack(const PostedRender& post, const lumvik_host_frame& frame);
  void Notify(const std::optional<PostedRender>& dropped, Status status);
  std::string TextOf(std::uint64_t ticket, Status status) const;

  std::mutex mutex_;
  std::condition_variable changed_;
  std::optional<PostedRender> waiting_;
  std::vector<Progress> progress_;  // by ticket, from 1
  std::uint64_t failed_ticket_ = 0;
  TextBuffer failure_{};  // its text
  std::thread::id worker_;
  int callbacks_ = 0;
  bool has_worker_ = false;
  bool is_closed_ = false;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_PHOTO_RENDER_QUEUE_H_
