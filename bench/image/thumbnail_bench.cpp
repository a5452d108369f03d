// Thumbnail and perceptual hash of a 24-megapixel JPEG, against decoding alone: `ratio` is the decoder's
// share of the time.
#include <memory>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include "alternating.h"
#include "analysis/perceptual_hash.h"
#include "image/thumbnail.h"
#include "support/file_bytes.h"
#include "support/temp_dir.h"

namespace lumvik::bench {
namespace {

constexpr int kColumns = 6000;
constexpr int kRows = 4000;

struct LargeJpeg {
  LargeJpeg() {
    cv::Mat picture;
    cv::resize(cv::imread(LUMVIK_TEST_DATA "/cat.jpg"), picture, cv::Size(kColumns, kRows), 0, 0,
               cv::INTER_CUBIC);
    cv::imencode(".jpg", picture, bytes);
    test::WriteBytes(path, bytes);
  }

  const test::TempDir folder;
  const std::string path = folder.File("24mp.jpg");
  std::vector<uint8_t> bytes;
};

Comparison BesideDecoding(void (*ours)(const std::string& path), int flag) {
  const auto jpeg = std::make_shared<LargeJpeg>();
  return {[=] { ours(jpeg->path); }, [=] { benchmark::DoNotOptimize(cv::imdecode(jpeg->bytes, flag)); },
          int64_t{kColumns} * kRows, static_cast<int64_t>(jpeg->bytes.size())};
}

void MakeOne(const std::string& path) {
  Thumbnail thumbnail;
  MakeThumbnail(path, thumbnail);
  benchmark::DoNotOptimize(thumbnail.size);
}

void HashOne(const std::string& path) {
  uint64_t hash = 0;
  PerceptualHashOfFile(path, hash);
  benchmark::DoNotOptimize(hash);
}

const bool kRegistered = [] {
  RegisterComparison("thumbnail", [] { return BesideDecoding(MakeOne, cv::IMREAD_COLOR); });
  RegisterComparison("perceptual_hash", [] { return BesideDecoding(HashOne, cv::IMREAD_GRAYSCALE); });
  return true;
}();

}  // namespace
}  // namespace lumvik::bench
