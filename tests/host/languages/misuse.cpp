// Misuses of the engine and of the host library from C++: each gives an exception with its status, and the
// process lives.
//
//   host_misuse_cpp RAW_FILE
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "lumvik_host.hpp"

namespace {

using lumvik::api::Photo;
using lumvik::api::Settings;
using Status = lumvik_host_status;

// What the misuses start with.
struct Start {
  explicit Start(const std::string& raw_file) : path(raw_file), photo(raw_file) {}

  std::string path;
  Photo photo;
  Settings settings;
};

// Closed after main(), when much of the process is gone already.
std::optional<Photo>& PhotoClosedAtExit() {
  static std::optional<Photo> photo;
  return photo;
}

lumvik::api::SaveOptions WithoutMetadata() {
  lumvik::api::SaveOptions options;
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  return options;
}

void CutOutACrop(Start& start) {
  Settings cropped;
  cropped.SetNumber("crop.w", 0.5F);
  start.photo.FindSubject();
  start.photo.SetSettings(cropped);
  start.photo.SaveCutout("cutout.png");
}

void RenderFromThreads(Start& start) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&start] { start.photo.GetHistogram(); });
  }
  for (std::thread& thread : threads) thread.join();
}

void ThrowFromACallback(Start& start) {
  start.photo.Post([](const lumvik_host_frame&) { throw std::runtime_error("thrown by the host"); });
  start.photo.Wait();
}

void CloseFromACallback(Start& start) {
  Photo other(start.path);
  lumvik_host_photo* const handle = other.handle();
  other.Post([handle](const lumvik_host_frame&) { lumvik_host_close(handle); });
  while (lumvik_host_get_error(handle, nullptr, 0) != LUMVIK_HOST_INVALID_HANDLE) std::this_thread::yield();
  other.Render();
}

// While another thread renders.
void CloseDuringACall(Start& start) {
  std::optional<Photo> other(start.path);
  lumvik_host_photo* const handle = other->handle();
  std::thread renders([handle] {
    while (lumvik_host_render(handle) == LUMVIK_HOST_OK) lumvik_host_set_settings(handle, nullptr);
  });
  other.reset();
  renders.join();
  lumvik::api::Check(lumvik_host_render(handle));
}

void UseAfterMove(Start& start) {
  Photo other(start.path);
  const Photo moved(std::move(other));
  other.Render();  // NOLINT(bugprone-use-after-move): the misuse
}

[[noreturn]] void UseSettingsForever() {
  for (;;) {
    Settings settings;
    settings.SetNumber("exposure", 1);
    settings.ToJson();
  }
}

void ExitDuringCalls(Start& start) {
  PhotoClosedAtExit().emplace(start.path);
  for (int i = 0; i < 10; ++i) PhotoClosedAtExit()->Post();
  for (int i = 0; i < 3; ++i) std::thread(UseSettingsForever).detach();
}

struct Misuse {
  const char* what;
  std::function<void(Start&)> run;
  Status expected;
};

const Misuse kMisuses[] = {
    {"saving to a path without a dot", [](Start& s) { s.photo.Save("out", WithoutMetadata()); },
     LUMVIK_HOST_INVALID_ARGUMENT},
    {"saving with an unknown extension", [](Start& s) { s.photo.Save("out.xyz", WithoutMetadata()); },
     LUMVIK_HOST_INVALID_ARGUMENT},
    {"sharpening with radius 0",
     [](Start& s) {
       s.settings.SetNumber("sharpening_amount", 50);
       s.settings.SetNumber("sharpening_radius", 0);
     },
     LUMVIK_HOST_INVALID_ARGUMENT},
    {"a setting that is NaN",
     [](Start& s) { s.settings.SetNumber("exposure", std::numeric_limits<float>::quiet_NaN()); },
     LUMVIK_HOST_INVALID_ARGUMENT},
    {"a setting far out of range", [](Start& s) { s.settings.SetNumber("clarity", 1e30F); },
     LUMVIK_HOST_INVALID_ARGUMENT},
    {"a setting of another kind", [](Start& s) { s.settings.SetFlag("exposure", true); },
     LUMVIK_HOST_INVALID_ARGUMENT},
    {"a cutout of a cropped photo", CutOutACrop, LUMVIK_HOST_UNSUPPORTED},
    {"four threads with one photo", RenderFromThreads, LUMVIK_HOST_OK},
    {"a callback that throws", ThrowFromACallback, LUMVIK_HOST_OK},
    {"closing from a callback", CloseFromACallback, LUMVIK_HOST_INVALID_HANDLE},
    {"closing during a call", CloseDuringACall, LUMVIK_HOST_INVALID_HANDLE},
    {"use after a move", UseAfterMove, LUMVIK_HOST_INVALID_HANDLE},
    {"a folder for a photograph", [](Start&) { const Photo photo("/"); }, LUMVIK_HOST_INVALID_ARGUMENT},
    {"no bytes for a photograph", [](Start&) { const Photo photo(nullptr, 0); },
     LUMVIK_HOST_INVALID_ARGUMENT},
    {"exiting during calls", ExitDuringCalls, LUMVIK_HOST_OK},
};

Status StatusOf(const std::function<void(Start&)>& run, Start& start) {
  try {
    run(start);
    return LUMVIK_HOST_OK;
  } catch (const lumvik::api::Error& error) {
    return error.status();
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return EXIT_FAILURE;
  Start start(argv[1]);
  int wrong = 0;
  for (const Misuse& misuse : kMisuses) {
    const Status status = StatusOf(misuse.run, start);
    if (status == misuse.expected) continue;
    std::printf("%s: %s, not %s: %s\n", misuse.what, lumvik_host_status_name(status),
                lumvik_host_status_name(misuse.expected), lumvik_host_last_error());
    ++wrong;
  }
  start.photo.ResetSettings();
  start.photo.Render();  // after all this
  std::printf("%zu misuses, %d wrong\n", std::size(kMisuses), wrong);
  return wrong == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
