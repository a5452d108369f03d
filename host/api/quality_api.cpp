// The quality of RAW files, and its load in the background.
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include "api/photo_handle.h"
#include "api/quality.h"

namespace lumvik::host {
namespace {

constexpr int kBestQuality = 1;
constexpr int kWorstQuality = 4;

struct LoadOutcome {
  Status status;
  TextBuffer text;  // of the failure
};

LoadOutcome LoadInstead(PhotoObject& object, int quality) noexcept {
  try {
    auto image = object.photo.Load(quality);
    const std::lock_guard<TurnLock> turn(object.turn);
    if (object.load->IsWanted()) object.photo.Replace(std::move(image));
    return {LUMVIK_HOST_OK, {}};
  } catch (...) {
    const Status status = ReportException();
    object.error.Set(ThreadText());
    return {status, object.error.Get()};
  }
}

void RunLoad(std::shared_ptr<PhotoObject> object, int quality) {
  const std::shared_ptr<BackgroundLoad> load = object->load;
  const LoadOutcome outcome = LoadInstead(*object, quality);
  object.reset();
  load->End(outcome.status, outcome.text);
}

}  // namespace

void CheckQuality(int quality) {
  if (quality < kBestQuality || quality > kWorstQuality) {
    throw Failure(LUMVIK_HOST_INVALID_ARGUMENT,
                  "quality is " + std::to_string(quality) + ", which is not in 1..4");
  }
}

void LoadInBackground(const std::shared_ptr<PhotoObject>& object, int quality) {
  object->load->Begin();
  std::thread(RunLoad, object, quality).detach();
}

}  // namespace lumvik::host

using namespace lumvik::host;

lumvik_host_status lumvik_host_set_quality(lumvik_host_photo* photo, int32_t quality) {
  return WithPhotoObject(photo, [&](const std::shared_ptr<PhotoObject>& object) {
    CheckQuality(quality);
    Photo& opened = object->photo;
    if (!opened.IsRaw()) return;
    if (opened.Info().quality != quality) opened.Replace(opened.Load(quality));
    object->load->Abandon();
  });
}

lumvik_host_status lumvik_host_wait_for_quality(lumvik_host_photo* photo, int32_t milliseconds) {
  return WithPhotoAtOnce(photo, [&](const std::shared_ptr<PhotoObject>& object) {
    object->load->Wait(milliseconds);
    RequireOpen(*object);
  });
}
