// Every allocation of every call fails once, in our code and in the libraries: the call returns or throws,
// the context is unchanged, the same call then succeeds, and our code leaks nothing. Each failure runs in its
// own process, since not every library survives it.
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <iostream>
#include <new>

#include "allocation/crash_origin.h"
#include "allocation/failing_malloc.h"
#include "api/api_test.h"
#include "support/exif_jpeg.h"

namespace lumvik::test {
namespace {

// How the process of one failure ends.
enum Outcome { kAsDocumented, kWrong, kLibraryCrashed, kNothingFailed };

constexpr int kThrew = 1;  // not a status of the interface

constexpr int kMostAllocations = 10000;

struct Call {
  const char* name;
  std::function<int(EngineContext*)> make;
  std::string photograph = {};  // loaded first; empty: none
  std::string output = {};      // the file it writes; empty: none
  bool may_lack_exif = false;
  bool with_mask = false;
  bool renders = false;
  bool writes_jpeg = false;
};

// Large enough for any preview of this test.
Bytes& Room() {
  static Bytes room(1 << 16);
  return room;
}

// The context without the texts of a failure.
std::string Essence(EngineContext& context) {
  for (std::string* text : {&context.last_error, &context.decoded.path, &context.decoded.error}) {
    std::string().swap(*text);
  }
  return Describe(context);
}

int Answer(const Call& call, EngineContext* context) {
  try {
    return call.make(context);
  } catch (const std::bad_alloc&) {
  } catch (const cv::Exception&) {
  }
  return kThrew;
}

bool Check(bool condition, const std::string& otherwise) {
  if (!condition) std::cerr << otherwise << "\n";
  return condition;
}

// Makes the call with the allocation after `successes` failing. The same call runs on another context first:
// it gives the expected result, and the libraries make the allocations that they keep.
Outcome Fail(const Call& call, int successes) {
  cv::setNumThreads(1);  // only this thread's allocations are counted
  const auto prepared = [&call] {
    ContextPtr context = CreateContext();
    if (!call.photograph.empty()) {
      lumvik_load_arw(context.get(), call.photograph.c_str(), 1);
      lumvik_set_clarity(context.get(), 20);
    }
    if (call.with_mask) {
      cv::setRNGSeed(1);  // for the segmentation
      lumvik_segment_subject(context.get(), 0.5F, 0.5F);
    }
    return context;
  };
  const ContextPtr model = prepared();
  ContextPtr context = prepared();
  const int usual = Answer(call, model.get());
  const std::string after = Essence(*model);
  const Bytes written = call.output.empty() ? Bytes() : ReadBytes(call.output);
  const std::string before = Essence(*context);
  ExitOnCrash(kLibraryCrashed, kWrong);

  FailingMalloc failing(successes);
  const int status = Answer(call, context.get());
  failing.Stop();
  if (!failing.HasFailed()) return kNothingFailed;
  const std::string state = Essence(*context);
  bool right = Check(usual == LUMVIK_OK, "no success without a failure");
  if (status == usual) {
    right &= Check(state == after, "another result");
    right &=
        Check(call.output.empty() || call.may_lack_exif || ReadBytes(call.output) == written, "another file");
  } else {
    // A render made by the call is kept.
    right &= Check(state == before || (call.renders && state == after),
                   "a failure that changes the context:\n" + before + "to\n" + state);
  }
  right &= Check(Answer(call, context.get()) == usual && Essence(*context) == after, "no success afterwards");
  right &= Check(call.output.empty() || ReadBytes(call.output) == written, "another file afterwards");
  context.reset();
  right &= Check(BlocksHeld() == 0, std::to_string(BlocksHeld()) + " lost blocks");
  return right ? kAsDocumented : kWrong;
}

class AllocationFailureTest : public ApiTest {
 protected:
  static void FailEach(const Call& call) {
    SCOPED_TRACE(call.name);
    int outcome = kAsDocumented;
    int failures = 0;
    for (; outcome != kNothingFailed && failures < kMostAllocations; ++failures) {
      const pid_t child = fork();
      ASSERT_GE(child, 0);
      if (child == 0) _exit(Fail(call, failures));
      int state = 0;
      ASSERT_EQ(waitpid(child, &state, 0), child);
      // When libjpeg cannot allocate its first structures, OpenCV's encoder jumps to an address not yet set.
      if (call.writes_jpeg && WIFSIGNALED(state)) continue;
      ASSERT_TRUE(WIFEXITED(state)) << "allocation " << failures << ": signal " << WTERMSIG(state);
      outcome = WEXITSTATUS(state);
      EXPECT_NE(outcome, kWrong) << "allocation " << failures;
    }
    EXPECT_EQ(outcome, kNothingFailed);
    EXPECT_GT(failures, 1);
  }

  // A small JPEG file with EXIF.
  std::string WriteJpeg() const {
    const ExifBlock exif = ExifBlock().Ascii(Ifd::kZero, 0x010F, "Maker").Shorts(Ifd::kZero, 0x0112, {6});
    return WriteBytes(Path("exif.jpg"), JpegWithExif(exif.Serialize()));
  }
};

TEST_F(AllocationFailureTest, Loading) {
  const std::string earlier = WritePicture("earlier.png");
  for (const char* name : {"a.png", "a.jpg", "a.tif", "a.webp", "a.bmp"}) {
    const std::string path = WritePicture(name);
    FailEach({name, [path](auto* context) { return lumvik_load_arw(context, path.c_str(), 1); }, earlier});
  }
  for (const RawFormat format : {RawFormat::kArwCompressed, RawFormat::kDng}) {
    RawOptions options;
    options.format = format;
    const std::string path = WriteRaw("a.arw", options);
    FailEach({"a.arw", [path](auto* context) { return lumvik_load_arw(context, path.c_str(), 1); }, earlier});
  }
}

TEST_F(AllocationFailureTest, RenderingAndReadingBack) {
  const std::string photograph = WriteJpeg();
  FailEach({"process", lumvik_process, photograph});
  FailEach({"preview",
            [](auto* context) {
              Bytes& pixels = Room();
              return lumvik_get_preview(context, pixels.data(), static_cast<int>(pixels.size()));
            },
            photograph});
  Call histogram = {"histogram",
                    [](auto* context) {
                      uint32_t bins[4][LUMVIK_HISTOGRAM_BINS];
                      return lumvik_get_histogram(context, bins[0], bins[1], bins[2], bins[3]);
                    },
                    photograph};
  histogram.renders = true;
  FailEach(histogram);
  FailEach({"exif",
            [](auto* context) {
              ExifInfo info;
              return lumvik_get_exif(context, &info);
            },
            photograph});
}

TEST_F(AllocationFailureTest, Exporting) {
  const std::string photograph = WriteJpeg();
  const std::string jpeg = Path("out.jpg");
  const std::string png = Path("out.png");
  const std::string tiff = Path("out.tif");
  Call carrying = {"jpeg",
                   [jpeg](auto* context) { return lumvik_export_jpeg(context, jpeg.c_str(), 90, 0, 1); },
                   photograph, jpeg};
  carrying.may_lack_exif = true;
  carrying.writes_jpeg = true;
  FailEach(carrying);
  FailEach(
      {"png", [png](auto* context) { return lumvik_export_png(context, png.c_str(), 16); }, photograph, png});
  FailEach({"tiff", [tiff](auto* context) { return lumvik_export_tiff(context, tiff.c_str()); }, photograph,
            tiff});
}

TEST_F(AllocationFailureTest, Suggesting) {
  const std::string photograph = WriteJpeg();
  static float slots[LUMVIK_ENHANCE_SLOTS];
  FailEach({"exposure", [](auto* context) { return lumvik_auto_exposure(context, slots); }, photograph});
  FailEach({"white balance", [](auto* c) { return lumvik_auto_white_balance(c, slots, slots); }, photograph});
  FailEach({"enhance", [](auto* context) { return lumvik_auto_enhance(context, slots); }, photograph});
  FailEach({"crop", [](auto* c) { return lumvik_auto_crop(c, slots, slots, slots, slots); }, photograph});
  FailEach({"straighten", [](auto* context) { return lumvik_auto_straighten(context, slots); }, photograph});
}

TEST_F(AllocationFailureTest, CuttingOut) {
  const std::string photograph = WriteRaw("a.arw");
  FailEach({"segment",
            [](auto* context) {
              cv::setRNGSeed(1);  // for the segmentation
              return lumvik_segment_subject(context, 0.5F, 0.5F);
            },
            photograph});
  const std::string png = Path("out.png");
  Call cut_out = {"cut-out", [png](auto* context) { return lumvik_export_subject_png(context, png.c_str()); },
                  photograph, png};
  cut_out.with_mask = true;
  FailEach(cut_out);
}

TEST_F(AllocationFailureTest, PathTools) {
  for (const std::string& path : {WriteJpeg(), WriteRaw("a.arw")}) {
    FailEach({"hash", [path](auto*) {
                uint64_t hash = 0;
                return lumvik_phash(path.c_str(), &hash);
              }});
    Call thumbnail = {"thumbnail", [path](auto*) {
                        uint8_t* data = nullptr;
                        int size = 0;
                        const int status = lumvik_extract_thumbnail(path.c_str(), &data, &size);
                        lumvik_free_thumb(data);
                        return status;
                      }};
    thumbnail.writes_jpeg = true;
    FailEach(thumbnail);
  }
}

TEST_F(AllocationFailureTest, ToneCurves) {
  FailEach({"curve", [](auto* context) {
              const float points[] = {0, 0.1F, 0.5F, 0.6F, 1, 1};
              lumvik_set_tone_curve(context, 0, points, 3);
              return LUMVIK_OK;
            }});
}

}  // namespace
}  // namespace lumvik::test
