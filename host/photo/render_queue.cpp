#include "photo/render_queue.h"

#include <chrono>
#include <utility>

namespace lumvik::host {
namespace {

// The callbacks that the calling thread is in, innermost first.
class CallbackScope {
 public:
  explicit CallbackScope(const RenderQueue* queue) : queue_(queue), outer_(innermost) { innermost = this; }
  ~CallbackScope() { innermost = outer_; }
  CallbackScope(const CallbackScope&) = delete;
  CallbackScope& operator=(const CallbackScope&) = delete;

  static bool IsInside(const RenderQueue* queue) {
    const CallbackScope* scope = innermost;
    while (scope != nullptr && scope->queue_ != queue) scope = scope->outer_;
    return scope != nullptr;
  }

 private:
  // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): each thread has its own
  static thread_local const CallbackScope* innermost;

  const RenderQueue* queue_;
  const CallbackScope* outer_;
};

// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): see above
thread_local const CallbackScope* CallbackScope::innermost = nullptr;

const char* DroppedText(Status status) {
  return status == LUMVIK_HOST_STALE ? "a newer render replaced the posted one"
                                     : "the posted render was canceled";
}

}  // namespace

std::uint64_t RenderQueue::Post(PostedRender post, CurrentSettings* current,
                                const std::function<std::thread()>& start_worker) {
  std::optional<PostedRender> replaced;
  std::uint64_t ticket = 0;
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    if (is_closed_) throw Failure(LUMVIK_HOST_INVALID_HANDLE, "the photo was closed by another thread");
    if (!has_worker_) {
      std::thread worker = start_worker();
      worker_ = worker.get_id();
      has_worker_ = true;
      worker.detach();  // it may be the last to use the photo
    }
    progress_.emplace_back();
    ticket = progress_.size();
    if (post.settings) {
      current->Set(post.settings);
    } else {
      post.settings = current->Get();
    }
    post.ticket = ticket;
    replaced = Drop(LUMVIK_HOST_STALE);
    waiting_ = std::move(post);
  }
  changed_.notify_all();
  Notify(replaced, LUMVIK_HOST_STALE);
  return ticket;
}

void RenderQueue::Wait(std::uint64_t ticket, int milliseconds) {
  std::unique_lock<std::mutex> lock(mutex_);
  if (ticket == 0) ticket = progress_.size();
  if (ticket == 0 || ticket > progress_.size()) {
    throw Failure(LUMVIK_HOST_INVALID_ARGUMENT, "no render with ticket " + std::to_string(ticket));
  }
  const bool is_in_callback = CallbackScope::IsInside(this);
  const auto is_over = [&] {
    const Progress& progress = ProgressOf(ticket);
    return progress.has_ended && (is_in_callback || !progress.is_calling_back);
  };
  // The worker would wait for itself.
  const bool is_on_worker = has_worker_ && worker_ == std::this_thread::get_id();
  if (milliseconds < 0 && !is_on_worker) {
    changed_.wait(lock, is_over);
  } else if (!is_on_worker) {
    changed_.wait_for(lock, std::chrono::milliseconds(milliseconds), is_over);
  }
  if (!is_over()) throw Failure(LUMVIK_HOST_TIMED_OUT, "the posted render has not ended yet");
  const auto status = static_cast<Status>(ProgressOf(ticket).status);
  if (status != LUMVIK_HOST_OK) throw Failure(status, TextOf(ticket, status));
}

void RenderQueue::Cancel() {
  std::optional<PostedRender> dropped;
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    dropped = Drop(LUMVIK_HOST_CANCELED);
  }
  Notify(dropped, LUMVIK_HOST_CANCELED);
}

void RenderQueue::Close() {
  std::optional<PostedRender> dropped;
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    is_closed_ = true;
    dropped = Drop(LUMVIK_HOST_CANCELED);
  }
  changed_.notify_all();
  Notify(dropped, LUMVIK_HOST_CANCELED);
  if (CallbackScope::IsInside(this)) return;
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [&] { return !has_worker_ && callbacks_ == 0; });
}

bool RenderQueue::AwaitPost() {
  std::unique_lock<std::mutex> lock(mutex_);
  changed_.wait(lock, [&] { return waiting_ || is_closed_; });
  return waiting_.has_value();
}

std::optional<PostedRender> RenderQueue::Take() {
  const std::lock_guard<std::mutex> guard(mutex_);
  return std::exchange(waiting_, std::nullopt);
}

void RenderQueue::Finish(const PostedRender& post, const lumvik_host_frame& frame) {
  {
    const std::lock_guard<std::mutex> guard(mutex_);
    const auto status = static_cast<Status>(frame.status);
    if (status != LUMVIK_HOST_OK) {
      failed_ticket_ = post.ticket;
      CopyCut(frame.error, failure_.data(), failure_.size());
    }
    MarkEnded(post, status);
  }
  CallBack(post, frame);
}

void RenderQueue::EndWorker() {
  const std::lock_guard<std::mutex> guard(mutex_);
  has_worker_ = false;
  changed_.notify_all();
}

std::optional<PostedRender> RenderQueue::Drop(Status status) {
  if (waiting_) MarkEnded(*waiting_, status);
  return std::exchange(waiting_, std::nullopt);
}

void RenderQueue::MarkEnded(const PostedRender& post, Status status) {
  ProgressOf(post.ticket) = {true, true, static_cast<std::uint8_t>(status)};
  ++callbacks_;
}

void RenderQueue::CallBack(const PostedRender& post, const lumvik_host_frame& frame) {
  changed_.notify_all();  // a callback on another thread may wait for this render
  if (post.callback != nullptr) {
    const CallbackScope scope(this);
    post.callback(&frame, post.user);
  }
  const std::lock_guard<std::mutex> guard(mutex_);
  ProgressOf(post.ticket).is_calling_back = false;
  --callbacks_;
  changed_.notify_all();
}

void RenderQueue::Notify(const std::optional<PostedRender>& dropped, Status status) {
  if (!dropped) return;
  lumvik_host_frame frame{};
  frame.struct_size = sizeof(frame);
  frame.status = status;
  frame.ticket = dropped->ticket;
  frame.error = DroppedText(status);
  CallBack(*dropped, frame);
}

std::string RenderQueue::TextOf(std::uint64_t ticket, Status status) const {
  if (status == LUMVIK_HOST_STALE || status == LUMVIK_HOST_CANCELED) return DroppedText(status);
  return ticket == failed_ticket_ ? failure_.data() : "the posted render failed";
}

}  // namespace lumvik::host
