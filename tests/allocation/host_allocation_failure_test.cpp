// Every allocation of every function of the host library fails once: the call reports that memory is
// exhausted, or succeeds where a library copes; its objects are as before and of use, and our code leaks
// nothing.
#include <gtest/gtest.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <iostream>
#include <opencv2/core.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "allocation/crash_origin.h"
#include "allocation/failing_malloc.h"
#include "host/api/child_process.h"
#include "host/api/misuse_photographs.h"
#include "lumvik_host.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::host::test {
namespace {

using lumvik::test::BlocksHeld;
using lumvik::test::ExitOnCrash;
using lumvik::test::FailingMalloc;
using Status = lumvik_host_status;

constexpr int kMostAllocations = 20000;
// The later ones of a call are much like the earlier ones.
constexpr int kEachUntil = 500;
constexpr int kStride = 29;

// The objects and results of calls. Nothing is allocated by passing them.
struct CallObjects {
  lumvik_host_photo* photo = nullptr;  // with a mask
  lumvik_host_settings* settings = nullptr;
  std::string photograph;
  std::string raw;
  std::string settings_file;
  std::string marked;  // an image
  std::string folder;
  std::string output;  // with the extension of the call
  std::vector<uint8_t> photo_bytes;
  std::array<uint8_t, 1 << 16> room{};
};

struct OwnedText {
  char* text = nullptr;
  ~OwnedText() { lumvik_host_free(text); }
};

struct OwnedData {
  uint8_t* data = nullptr;
  size_t size = 0;
  ~OwnedData() { lumvik_host_free(data); }
};

struct OwnedSettings {
  lumvik_host_settings* handle = nullptr;
  ~OwnedSettings() { lumvik_host_settings_close(handle); }
};

struct OwnedPhoto {
  lumvik_host_photo* handle = nullptr;
  ~OwnedPhoto() { lumvik_host_close(handle); }
};

// How the process of a call ends.
enum Outcome { kAsDocumented, kWrong, kLibraryCrashed };

// What a library or the engine reports in place of the cause: decoders damage; encoders and the search for
// the subject an internal failure.
enum class Hides { kNothing, kAsDamage, kAsInternal };

enum class Needs { kNoPhoto, kPhoto, kMask };

struct FailedCall {
  const char* name;
  Needs needs;
  Status (*make)(CallObjects& objects);
  const char* output = "out.txt";  // the name of the file it writes
  Hides hides = Hides::kNothing;
};

void PrintTo(const FailedCall& call, std::ostream* stream) {
  *stream << call.name;
}

template <typename Options>
Options Sized() {
  Options options{};
  options.struct_size = sizeof(Options);
  return options;
}

lumvik_host_save_options SavingAs(int32_t format) {
  auto options = Sized<lumvik_host_save_options>();
  options.format = format;
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  options.overwrite = LUMVIK_HOST_OVERWRITE_ANY;
  options.mark = "a mark";
  return options;
}

Status SaveWith(CallObjects& o, int32_t format) {
  const lumvik_host_save_options options = SavingAs(format);
  return lumvik_host_save(o.photo, o.output.c_str(), &options);
}

// Without lumvik_host_list_presets(): libstdc++ ends the process when it cannot allocate the iterator of a
// folder.
const FailedCall kFailedCalls[] = {
    {"describe_settings_json", Needs::kNoPhoto,
     [](CallObjects&) {
       OwnedText json;
       return lumvik_host_describe_settings_json(&json.text);
     }},
    {"settings_create", Needs::kNoPhoto,
     [](CallObjects&) {
       OwnedSettings created;
       return lumvik_host_settings_create(&created.handle);
     }},
    {"settings_copy", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedSettings copy;
       return lumvik_host_settings_copy(o.settings, &copy.handle);
     }},
    {"settings_set_engine_values", Needs::kNoPhoto,
     [](CallObjects& o) { return lumvik_host_settings_set_engine_values(o.settings); }},
    {"settings_set_number", Needs::kNoPhoto,
     [](CallObjects& o) {
       lumvik_host_settings_remove(o.settings, "sharpening_threshold");
       return lumvik_host_settings_set_number(o.settings, "sharpening_threshold", 20);
     }},
    {"settings_set_curve", Needs::kNoPhoto,
     [](CallObjects& o) {
       constexpr std::array<float, 6> kPoints = {0, 0.1F, 0.5F, 0.6F, 1, 1};
       return lumvik_host_settings_set_curve(o.settings, "tone_curves.red", kPoints.data(), 3);
     }},
    {"settings_merge", Needs::kNoPhoto,
     [](CallObjects& o) { return lumvik_host_settings_merge(o.settings, o.settings); }},
    {"settings_equal", Needs::kNoPhoto,
     [](CallObjects& o) {
       int32_t equal = 0;
       return lumvik_host_settings_equal(o.settings, o.settings, &equal);
     }},
    {"settings_to_json", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedText json;
       return lumvik_host_settings_to_json(o.settings, &json.text);
     }},
    {"settings_read", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedSettings read;
       return lumvik_host_settings_read(o.settings_file.c_str(), &read.handle);
     }},
    {"settings_write", Needs::kNoPhoto,
     [](CallObjects& o) { return lumvik_host_settings_write(o.settings, o.output.c_str(), 1); }},
    {"settings_to_xmp", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedText xmp;
       return lumvik_host_settings_to_xmp(o.settings, &xmp.text);
     }},
    {"find_sidecar", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedText sidecar;
       return lumvik_host_find_sidecar(o.photograph.c_str(), ".json", &sidecar.text);
     }},
    {"read_preset", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedSettings read;
       return lumvik_host_read_preset(o.folder.c_str(), "preset", &read.handle);
     }},
    {"write_preset", Needs::kNoPhoto,
     [](CallObjects& o) { return lumvik_host_write_preset(o.folder.c_str(), "written", o.settings, 1); }},
    {"open an image", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedPhoto opened;
       return lumvik_host_open(o.photograph.c_str(), nullptr, &opened.handle);
     },
     "out.txt", Hides::kAsDamage},
    {"open a RAW file", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedPhoto opened;
       return lumvik_host_open(o.raw.c_str(), nullptr, &opened.handle);
     },
     "out.txt", Hides::kAsDamage},
    {"open_bytes", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedPhoto opened;
       return lumvik_host_open_bytes(o.photo_bytes.data(), o.photo_bytes.size(), nullptr, &opened.handle);
     },
     "out.txt", Hides::kAsDamage},
    {"set_settings", Needs::kPhoto,
     [](CallObjects& o) { return lumvik_host_set_settings(o.photo, o.settings); }},
    {"get_settings", Needs::kPhoto,
     [](CallObjects& o) {
       OwnedSettings got;
       return lumvik_host_get_settings(o.photo, &got.handle);
     }},
    {"set_quality", Needs::kPhoto, [](CallObjects& o) { return lumvik_host_set_quality(o.photo, 2); },
     "out.txt", Hides::kAsDamage},
    {"get_preview", Needs::kPhoto,
     [](CallObjects& o) {
       auto options = Sized<lumvik_host_preview_options>();
       options.max_width = 20;
       return lumvik_host_get_preview(o.photo, &options, o.room.data(), o.room.size(), nullptr, nullptr);
     }},
    {"get_histogram", Needs::kPhoto,
     [](CallObjects& o) {
       static lumvik_host_histogram histogram;
       return lumvik_host_get_histogram(o.photo, &histogram);
     }},
    {"suggest", Needs::kPhoto,
     [](CallObjects& o) {
       OwnedSettings suggested;
       return lumvik_host_suggest(o.photo, LUMVIK_HOST_SUGGEST_ENHANCEMENT, &suggested.handle);
     }},
    {"find_subject", Needs::kPhoto,
     [](CallObjects& o) { return lumvik_host_find_subject(o.photo, 0.5F, 0.5F); }, "out.txt",
     Hides::kAsInternal},
    {"get_mask", Needs::kMask,
     [](CallObjects& o) {
       int32_t width = 0;
       int32_t height = 0;
       return lumvik_host_get_mask(o.photo, o.room.data(), o.room.size(), &width, &height);
     }},
    {"save a PNG", Needs::kPhoto, [](CallObjects& o) { return SaveWith(o, LUMVIK_HOST_FORMAT_PNG); },
     "out.png", Hides::kAsInternal},
    {"save a TIFF", Needs::kPhoto, [](CallObjects& o) { return SaveWith(o, LUMVIK_HOST_FORMAT_TIFF); },
     "out.tif", Hides::kAsInternal},
    {"save a JPEG", Needs::kPhoto, [](CallObjects& o) { return SaveWith(o, LUMVIK_HOST_FORMAT_JPEG); },
     "out.jpg", Hides::kAsInternal},
    {"save_bytes", Needs::kPhoto,
     [](CallObjects& o) {
       const lumvik_host_save_options options = SavingAs(LUMVIK_HOST_FORMAT_PNG);
       OwnedData saved;
       return lumvik_host_save_bytes(o.photo, &options, &saved.data, &saved.size);
     },
     "out.png", Hides::kAsInternal},
    {"save_cutout", Needs::kMask,
     [](CallObjects& o) {
       const lumvik_host_save_options options = SavingAs(LUMVIK_HOST_FORMAT_PNG);
       return lumvik_host_save_cutout(o.photo, o.output.c_str(), &options);
     },
     "out.png", Hides::kAsInternal},
    {"write_file", Needs::kNoPhoto,
     [](CallObjects& o) { return lumvik_host_write_file(o.output.c_str(), "text", 4, 1); }},
    {"write_png", Needs::kNoPhoto,
     [](CallObjects& o) {
       const lumvik_host_save_options options = SavingAs(LUMVIK_HOST_FORMAT_PNG);
       return lumvik_host_write_png(o.output.c_str(), o.room.data(), 4, 4, 3, &options);
     },
     "out.png"},
    {"read_mark", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedText mark;
       return lumvik_host_read_mark(o.marked.c_str(), &mark.text);
     }},
    {"fingerprint", Needs::kNoPhoto,
     [](CallObjects& o) {
       uint64_t fingerprint = 0;
       return lumvik_host_fingerprint(o.photograph.c_str(), &fingerprint);
     }},
    {"replace a marked file", Needs::kNoPhoto,
     [](CallObjects& o) {
       lumvik_host_save_options options = SavingAs(LUMVIK_HOST_FORMAT_PNG);
       options.overwrite = LUMVIK_HOST_OVERWRITE_MARKED;
       return lumvik_host_write_png(o.marked.c_str(), o.room.data(), 4, 4, 3, &options);
     }},
    {"read_exif of an image", Needs::kNoPhoto,
     [](CallObjects& o) {
       auto exif = Sized<lumvik_host_exif>();
       return lumvik_host_read_exif(o.photograph.c_str(), &exif);
     }},
    {"get_exif", Needs::kPhoto,
     [](CallObjects& o) {
       auto exif = Sized<lumvik_host_exif>();
       return lumvik_host_get_exif(o.photo, &exif);
     }},
    {"read_exif", Needs::kNoPhoto,
     [](CallObjects& o) {
       auto exif = Sized<lumvik_host_exif>();
       return lumvik_host_read_exif(o.raw.c_str(), &exif);
     },
     "out.txt", Hides::kAsDamage},
    {"get_warnings", Needs::kPhoto,
     [](CallObjects& o) {
       OwnedText warnings;
       return lumvik_host_get_warnings(o.photo, &warnings.text);
     }},
    {"check", Needs::kPhoto,
     [](CallObjects& o) {
       auto integrity = Sized<lumvik_host_integrity>();
       return lumvik_host_check(o.photo, &integrity);
     },
     "out.txt", Hides::kAsDamage},
    {"check_file", Needs::kNoPhoto,
     [](CallObjects& o) {
       auto integrity = Sized<lumvik_host_integrity>();
       return lumvik_host_check_file(o.photograph.c_str(), &integrity);
     },
     "out.txt", Hides::kAsDamage},
    {"identify", Needs::kNoPhoto,
     [](CallObjects& o) {
       int32_t format = 0;
       return lumvik_host_identify(o.raw.c_str(), &format);
     }},
    {"extract_thumbnail", Needs::kNoPhoto,
     [](CallObjects& o) {
       OwnedData thumbnail;
       return lumvik_host_extract_thumbnail(o.raw.c_str(), nullptr, &thumbnail.data, &thumbnail.size, nullptr,
                                            nullptr);
     },
     "out.txt", Hides::kAsDamage},
    {"extract_thumbnail of a size", Needs::kNoPhoto,
     [](CallObjects& o) {
       auto options = Sized<lumvik_host_thumbnail_options>();
       options.max_width = 8;
       options.mark = "mark";
       OwnedData thumbnail;
       return lumvik_host_extract_thumbnail(o.photograph.c_str(), &options, &thumbnail.data, &thumbnail.size,
                                            nullptr, nullptr);
     },
     "out.jpg", Hides::kAsDamage},
    {"extract_thumbnail of a size from a RAW file", Needs::kNoPhoto,
     [](CallObjects& o) {
       auto options = Sized<lumvik_host_thumbnail_options>();
       options.max_width = 20;
       options.metadata = LUMVIK_HOST_METADATA_NONE;
       options.mark = "a mark";
       OwnedData thumbnail;
       return lumvik_host_extract_thumbnail(o.raw.c_str(), &options, &thumbnail.data, &thumbnail.size,
                                            nullptr, nullptr);
     },
     "out.jpg", Hides::kAsDamage},
    {"hash", Needs::kNoPhoto,
     [](CallObjects& o) {
       uint64_t hash = 0;
       return lumvik_host_hash(o.photograph.c_str(), &hash);
     },
     "out.txt", Hides::kAsDamage},
};

lumvik_host_photo* Opened(const std::string& path) {
  lumvik_host_photo* photo = nullptr;
  if (lumvik_host_open(path.c_str(), nullptr, &photo) != LUMVIK_HOST_OK) {
    throw std::runtime_error(lumvik_host_last_error());
  }
  return photo;
}

// The state of the objects that a failure must not change.
std::string StateOf(const CallObjects& objects) {
  OwnedText json;
  std::string state =
      lumvik_host_settings_to_json(objects.settings, &json.text) == LUMVIK_HOST_OK ? json.text : "";
  if (objects.photo == nullptr) return state;
  OwnedSettings settings;
  OwnedText developed;
  auto info = Sized<lumvik_host_photo_info>();
  if (lumvik_host_get_settings(objects.photo, &settings.handle) == LUMVIK_HOST_OK &&
      lumvik_host_settings_to_json(settings.handle, &developed.text) == LUMVIK_HOST_OK &&
      lumvik_host_get_info(objects.photo, &info) == LUMVIK_HOST_OK) {
    state += developed.text + std::to_string(info.width) + ' ' + std::to_string(info.quality);
  }
  return state;
}

class HostAllocationFailureTest : public ::testing::TestWithParam<FailedCall> {
 protected:
  static constexpr char kSettings[] = R"({"lumvik": 2, "contrast": 20, "hsl": {"red": {"hue": 3}}})";

  HostAllocationFailureTest() {
    const std::string text = kSettings;
    lumvik::test::WriteBytes(folder_.File("preset.json"), {text.begin(), text.end()});
  }

  CallObjects Prepare() const {
    CallObjects objects;
    objects.photograph = PhotographPath();
    objects.raw = RawPhotographPath();
    objects.settings_file = folder_.File("preset.json");
    objects.marked = folder_.File("marked.png");
    const lumvik_host_save_options marking = SavingAs(LUMVIK_HOST_FORMAT_PNG);
    if (lumvik_host_write_png(objects.marked.c_str(), objects.room.data(), 4, 4, 3, &marking) !=
        LUMVIK_HOST_OK) {
      throw std::runtime_error(lumvik_host_last_error());
    }
    objects.folder = folder_.path().u8string();
    objects.output = folder_.File(GetParam().output);
    objects.photo_bytes = lumvik::test::ReadBytes(PhotographPath());
    if (lumvik_host_settings_read(objects.settings_file.c_str(), &objects.settings) != LUMVIK_HOST_OK) {
      throw std::runtime_error(lumvik_host_last_error());
    }
    if (GetParam().needs != Needs::kNoPhoto) objects.photo = Opened(RawPhotographPath());
    if (GetParam().needs == Needs::kMask) lumvik_host_find_subject(objects.photo, -1, -1);
    return objects;
  }

  static void Close(const CallObjects& objects) {
    lumvik_host_settings_close(objects.settings);
    lumvik_host_close(objects.photo);
  }

  static bool IsHidden(Status status) {
    switch (GetParam().hides) {
      case Hides::kAsDamage:
        return status == LUMVIK_HOST_DAMAGED || status == LUMVIK_HOST_UNSUPPORTED;
      case Hides::kAsInternal:
        return status == LUMVIK_HOST_INTERNAL;
      default:
        return false;
    }
  }

  // What is wrong when the allocation after `successes` fails; "" if nothing.
  std::string FaultOf(int successes, bool* failed) const {
    CallObjects objects = Prepare();
    const std::string before = StateOf(objects);
    FailingMalloc failing(successes);
    const Status status = GetParam().make(objects);
    failing.Stop();
    *failed = failing.HasFailed();
    std::string fault;
    if (status != LUMVIK_HOST_OK) {
      if (status != LUMVIK_HOST_OUT_OF_MEMORY && !IsHidden(status)) {
        fault = std::string(lumvik_host_status_name(status)) + ": " + lumvik_host_last_error();
      } else if (StateOf(objects) != before) {
        fault = "the failure changes the objects: " + before + " to " + StateOf(objects);
      }
      if (GetParam().make(objects) != LUMVIK_HOST_OK) fault += " no success afterwards";
    }
    Close(objects);
    if (BlocksHeld() != 0) fault += " " + std::to_string(BlocksHeld()) + " lost blocks";
    return fault;
  }

  // Fails each allocation from `*next` on, which is shared with the process that waits for this one.
  int FailEachFrom(int* next) const {
    cv::setNumThreads(1);  // only this thread's allocations are counted
    for (int i = 0; i < 2; ++i) {
      CallObjects model = Prepare();  // what libraries allocate once and keep
      if (GetParam().make(model) != LUMVIK_HOST_OK) std::cerr << lumvik_host_last_error() << '\n';
      Close(model);
    }
    ExitOnCrash(kLibraryCrashed, kWrong);
    int outcome = kAsDocumented;
    for (bool failed = true; failed && *next < kMostAllocations; *next += *next < kEachUntil ? 1 : kStride) {
      const std::string fault = FaultOf(*next, &failed);
      if (fault.empty()) continue;
      std::cerr << "allocation " << *next << ": " << fault << '\n';
      outcome = kWrong;
    }
    return outcome;
  }

 private:
  lumvik::test::TempDir folder_;
};

TEST_P(HostAllocationFailureTest, EveryAllocation) {
  RawPhotographPath();
  auto* const next = static_cast<int*>(
      mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
  ASSERT_NE(next, MAP_FAILED);
  // In another process, since not every library survives it. The test goes on after the allocation that a
  // library did not survive.
  const bool writes_jpeg = GetParam().output == std::string("out.jpg");
  int outcome = kLibraryCrashed;
  while (outcome == kLibraryCrashed) {
    outcome = ExitCodeOfChild([&] { return FailEachFrom(next); });
    // When libjpeg cannot allocate its first structures, OpenCV's encoder jumps to an address not yet set.
    if (writes_jpeg && outcome < 0) outcome = kLibraryCrashed;
    EXPECT_TRUE(outcome == kAsDocumented || outcome == kLibraryCrashed) << "allocation " << *next;
    ++*next;
  }
  EXPECT_GT(*next, 1);
  EXPECT_LT(*next, kMostAllocations);
  munmap(next, sizeof(int));
}

std::string FailedCallName(const ::testing::TestParamInfo<FailedCall>& info) {
  std::string name = info.param.name;
  std::replace(name.begin(), name.end(), ' ', '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Calls, HostAllocationFailureTest, ::testing::ValuesIn(kFailedCalls), FailedCallName);

}  // namespace
}  // namespace lumvik::host::test
