// Contexts used concurrently, one a thread, give the results of sequential use.
#include <algorithm>
#include <atomic>
#include <thread>

#include "api_test.h"

#ifdef LUMVIK_SANITIZE_THREAD
// False positives in uninstrumented libraries: the C library's time zone lock, OpenCV's one-time creation of
// its matrix operators, GDAL's initialization. One true race: LibRaw takes the date of the EXIF header that
// it adds to a preview from a buffer shared by all threads. The functions named are exported, so that they
// are found without debug symbols: LibRaw's get_timestamp is what takes the time zone lock.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_suppressions() {
  return "race:LibRaw::get_timestamp\nrace:LibRaw::tiff_head\nrace:cv::MatExpr::operator\ndeadlock:"
         "CPLAcquireMutex\n";
}
#endif

namespace lumvik::test {
namespace {

constexpr int kRounds = 2;

// A photograph and its settings.
struct Job {
  std::string photograph;
  int quality;
  float exposure;
};

// All results of a job concatenated: statuses, texts, sizes, records and files.
using Outcome = std::string;

class ThreadTest : public ApiTest {
 protected:
  ThreadTest() {
#ifdef LUMVIK_SANITIZE_THREAD
    cv::setNumThreads(1);  // the synchronization of OpenCV's pool is invisible to the sanitizer
#endif
    RawOptions uncompressed;
    uncompressed.format = RawFormat::kArwUncompressed;
    uncompressed.iso = 800;
    RawOptions dng;
    dng.format = RawFormat::kDng;
    const std::string missing_ordinary = Path("missing.png");
    const std::string missing_raw = Path("missing.arw");
    jobs_ = {
        {WriteRaw("a.arw"), 1, 0.5F},
        {WriteRaw("b.arw", uncompressed), 2, -0.5F},
        {WriteRaw("c.dng", dng), 1, 0.25F},
        {WritePicture("d.png"), 1, 1},
        {missing_ordinary, 1, 0},
        {missing_raw, 1, 0},
        {LUMVIK_SAMPLES "/sample_small.ARW", 2, 0.75F},
        {LUMVIK_TEST_DATA "/eiffel_gps_north_east.jpg", 1, -0.25F},
    };
  }

  // Runs a job in a new context; names of exported files begin with `prefix`.
  Outcome Run(const Job& job, const std::string& prefix) const;
  static Outcome Read(EngineContext* c);
  static Outcome OfItsPath(const std::string& photograph);
  Outcome Segmented(EngineContext* c, const std::string& prefix) const;

  std::vector<Job> jobs_;
};

Outcome ThreadTest::Run(const Job& job, const std::string& prefix) const {
  const ContextPtr context = CreateContext();
  EngineContext* c = context.get();
  Outcome outcome = std::to_string(lumvik_load_arw(c, job.photograph.c_str(), job.quality));
  outcome += lumvik_last_error(c);
  lumvik_set_exposure(c, job.exposure);
  lumvik_set_contrast(c, 20);
  outcome += std::to_string(lumvik_process(c)) + "," + std::to_string(lumvik_get_width(c)) + "x" +
             std::to_string(lumvik_get_height(c)) + lumvik_version();
  ExifInfo info = {};
  outcome += std::to_string(lumvik_get_exif(c, &info));
  outcome.append(reinterpret_cast<const char*>(&info), sizeof(info));
  float suggested[LUMVIK_ENHANCE_SLOTS + 6] = {};
  float* rest = suggested + LUMVIK_ENHANCE_SLOTS;
  outcome += std::to_string(lumvik_auto_enhance(c, suggested)) +
             std::to_string(lumvik_auto_exposure(c, rest)) +
             std::to_string(lumvik_auto_straighten(c, rest + 1)) +
             std::to_string(lumvik_auto_crop(c, rest + 2, rest + 3, rest + 4, rest + 5));
  outcome.append(reinterpret_cast<const char*>(suggested), sizeof(suggested));
  outcome += Read(c) + OfItsPath(job.photograph) + Segmented(c, prefix);
  const std::string jpeg = Path(prefix + ".jpg");
  const std::string png = Path(prefix + ".png");
  const std::string tiff = Path(prefix + ".tif");
  outcome += std::to_string(lumvik_export_jpeg(c, jpeg.c_str(), 90, 0, 1));
  outcome += std::to_string(lumvik_export_png(c, png.c_str(), 16));
  outcome += std::to_string(lumvik_export_tiff(c, tiff.c_str()));
  for (const std::string& file : {jpeg, png, tiff}) {
    if (!std::filesystem::exists(file)) continue;
    for (const uint8_t byte : ReadBytes(file)) outcome.push_back(static_cast<char>(byte));
    std::filesystem::remove(file);
  }
  return outcome + lumvik_last_error(c) + lumvik_last_error(nullptr);
}

Outcome ThreadTest::Read(EngineContext* c) {
  std::vector<uint32_t> bins(size_t{4} * LUMVIK_HISTOGRAM_BINS);
  const int counted = lumvik_get_histogram(c, &bins[0], &bins[256], &bins[512], &bins[768]);
  Bytes preview(
      size_t{4} * static_cast<size_t>(lumvik_get_width(c)) * static_cast<size_t>(lumvik_get_height(c)) + 1);
  const int rendered = lumvik_get_preview(c, preview.data(), static_cast<int>(preview.size()));
  Outcome outcome = std::to_string(counted) + std::to_string(rendered);
  outcome.append(reinterpret_cast<const char*>(bins.data()), bins.size() * sizeof(uint32_t));
  return outcome.append(preview.begin(), preview.end());
}

Outcome ThreadTest::OfItsPath(const std::string& photograph) {
  uint64_t hash = 0;
  uint8_t* thumbnail = nullptr;
  int size = 0;
  Outcome outcome = std::to_string(lumvik_phash(photograph.c_str(), &hash)) + " " + std::to_string(hash) +
                    " " + std::to_string(lumvik_extract_thumbnail(photograph.c_str(), &thumbnail, &size));
  // The header that LibRaw adds to a preview holds uninitialized bytes.
  const int header = std::min(size, 1024);
  outcome.append(thumbnail + header, thumbnail + size);
  lumvik_free_thumb(thumbnail);
  return outcome;
}

// GrabCut is seeded randomly, so that only the statuses are compared and not the mask.
Outcome ThreadTest::Segmented(EngineContext* c, const std::string& prefix) const {
  const std::string cutout = Path(prefix + ".subject.png");
  Bytes mask(size_t{4096} * 4096);
  Outcome outcome = std::to_string(lumvik_segment_subject(c, 0.5F, 0.5F));
  outcome += std::to_string(lumvik_get_mask(c, mask.data(), static_cast<int>(mask.size())));
  if (lumvik_get_mask(c, mask.data(), static_cast<int>(mask.size())) == LUMVIK_OK) {
    outcome += std::to_string(lumvik_export_subject_png(c, cutout.c_str()));
    std::filesystem::remove(cutout);
  }
  return outcome;
}

// Concurrently first, so that one-time initialization happens there.
TEST_F(ThreadTest, ConcurrentJobsGiveTheBytesOfSequentialOnes) {
  std::vector<std::vector<Outcome>> together(jobs_.size());
  std::atomic<size_t> waiting = jobs_.size();
  std::vector<std::thread> threads;
  for (size_t i = 0; i < jobs_.size(); ++i) {
    threads.emplace_back([&, i] {
      --waiting;
      while (waiting > 0) std::this_thread::yield();
      for (int round = 0; round < kRounds; ++round) {
        together[i].push_back(Run(jobs_[i], "together" + std::to_string(i)));
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::vector<Outcome> alone;
  for (const Job& job : jobs_) alone.push_back(Run(job, "alone"));
  for (size_t i = 0; i < jobs_.size(); ++i) {
    for (const Outcome& outcome : together[i]) EXPECT_TRUE(outcome == alone[i]) << jobs_[i].photograph;
    EXPECT_EQ(std::count(alone.begin(), alone.end(), alone[i]), 1) << jobs_[i].photograph;
  }
}

TEST_F(ThreadTest, AContextMayMoveFromThreadToThread) {
  const auto in_a_thread = [](auto work) { std::thread(work).join(); };
  in_a_thread([this] { LoadNeutral(); });
  in_a_thread([this] { EXPECT_EQ(lumvik_process(ctx()), LUMVIK_OK); });
  cv::Mat exported;
  in_a_thread([&] { exported = Exported(); });
  EXPECT_TRUE(SameBytes(exported, Widened(SmallPicture())));
}

}  // namespace
}  // namespace lumvik::test
