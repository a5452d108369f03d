// Renders in the background.
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "api/arguments.h"
#include "api/photo_handle.h"
#include "api/settings_handle.h"
#include "photo/preview.h"

namespace lumvik::host {
namespace {

// What a callback receives. It holds the pixels.
struct Rendering {
  std::shared_ptr<const Frame> pixels;
  PreviewLayout layout;
};

Rendering PreviewOf(PhotoObject& object, const PostedRender& post, std::shared_ptr<const Frame> frame) {
  const PreviewLayout layout = LayoutOf(post.options, *frame);
  if (IsWholeFrame(layout, *frame)) return {std::move(frame), layout};
  const std::shared_ptr<Frame> preview = object.previews.Take(layout.Size());
  CopyPreview(*frame, layout, preview->pixels.get());
  return {preview, layout};
}

// Null without a waiting render.
std::shared_ptr<const Frame> RenderNewest(PhotoObject& object, std::optional<PostedRender>* post) {
  const std::lock_guard<TurnLock> turn(object.turn);
  *post = object.renders->Take();  // not earlier: it may be replaced until the photo is free
  if (!*post) return nullptr;
  object.photo.UseSettings((*post)->settings);
  return object.photo.RenderedFrame((*post)->options.background_blur);
}

void ServePost(PhotoObject& object) {
  std::optional<PostedRender> post;
  Rendering rendering;
  lumvik_host_frame frame{};
  frame.struct_size = sizeof(frame);
  frame.error = "";
  try {
    auto whole = RenderNewest(object, &post);
    if (!post) return;
    rendering = PreviewOf(object, *post, std::move(whole));
    frame.width = rendering.layout.width;
    frame.height = rendering.layout.height;
    frame.channels = rendering.layout.channels;
    frame.blue_first = rendering.layout.blue_first ? 1 : 0;
    frame.stride = rendering.layout.stride;
    frame.pixels = rendering.pixels->pixels.get();
  } catch (...) {
    frame.status = ReportException();
    frame.error = ThreadText();
    object.error.Set(frame.error);
  }
  frame.ticket = post->ticket;
  object.renders->Finish(*post, frame);
}

void RunWorker(std::shared_ptr<PhotoObject> object) {
  const std::shared_ptr<RenderQueue> renders = object->renders;
  while (renders->AwaitPost()) ServePost(*object);
  object.reset();
  renders->EndWorker();
}

}  // namespace
}  // namespace lumvik::host

using namespace lumvik::host;

lumvik_host_status lumvik_host_post(lumvik_host_photo* photo, lumvik_host_settings* settings,
                                    const lumvik_host_preview_options* options, lumvik_host_callback callback,
                                    void* user, uint64_t* ticket) {
  return WithPhotoAtOnce(photo, [&](const std::shared_ptr<PhotoObject>& object) {
    PostedRender post;
    post.options = OptionsOf(options);
    CheckPreviewOptions(post.options);
    if (settings != nullptr) post.settings = std::make_shared<const Settings>(ValuesOf(settings));
    post.callback = callback;
    post.user = user;
    const std::uint64_t posted = object->renders->Post(std::move(post), &object->settings,
                                                       [&] { return std::thread(RunWorker, object); });
    if (ticket != nullptr) *ticket = posted;
  });
}

lumvik_host_status lumvik_host_wait(lumvik_host_photo* photo, uint64_t ticket, int32_t milliseconds) {
  return WithPhotoAtOnce(photo, [&](const std::shared_ptr<PhotoObject>& object) {
    object->renders->Wait(ticket, milliseconds);
  });
}

lumvik_host_status lumvik_host_cancel(lumvik_host_photo* photo) {
  return WithPhotoAtOnce(photo,
                         [](const std::shared_ptr<PhotoObject>& object) { object->renders->Cancel(); });
}
