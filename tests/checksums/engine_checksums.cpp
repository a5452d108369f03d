#include "engine_checksums.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "fresh_thread.h"
#include "lumvik.hpp"
#include "lumvik_host.hpp"

namespace lumvik::checksums {
namespace {

constexpr int kQualities[] = {1, 2, 3, 4};
constexpr int kQualitiesOfOrdinaryImages[] = {1};

std::vector<std::uint8_t> FileBytes(const std::string& path) {
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), {}};
}

void Load(engine::Context& photo, const Photograph& photograph, int quality = 1) {
  photo.Load(photograph.path, static_cast<engine::RawQuality>(quality));
}

void AddSuggestions(const engine::Context& photo, const std::string& name, ChecksumList& list) {
  const engine::WhiteBalance balance = photo.AutoWhiteBalance();
  const engine::Enhancement enhancement = photo.AutoEnhance();
  const engine::Crop crop = photo.AutoCrop();
  list.AddFloats(name + "/auto_exposure", {photo.AutoExposure()});
  list.AddFloats(name + "/auto_white_balance", {balance.temperature, balance.tint});
  list.AddFloats(name + "/auto_enhance", {enhancement.exposure, enhancement.contrast, enhancement.highlights,
                                          enhancement.shadows, enhancement.nr_luminance});
  list.AddFloats(name + "/auto_crop", {crop.x, crop.y, crop.w, crop.h});
  list.AddFloats(name + "/auto_straighten", {photo.AutoStraighten()});
}

void AddHistogram(const engine::Histogram& histogram, const std::string& name, ChecksumList& list) {
  static_assert(sizeof(histogram) == 4 * sizeof(engine::Histogram::Bins));
  list.AddBytes(name, &histogram, sizeof(histogram));
}

// What each load gives: the default render, which is tinted, and what is measured in the loaded image.
void AddLoads(const Photograph& photograph, ChecksumList& list) {
  engine::Context photo;
  const auto add = [&](int quality) {
    const std::string name = photograph.name + "/quality_" + std::to_string(quality);
    Load(photo, photograph, quality);
    AddSuggestions(photo, name, list);
    list.AddBytes(name + "/default_preview", photo.Preview().data);
    AddHistogram(photo.GetHistogram(), name + "/default_histogram", list);
  };
  if (photograph.is_raw) {
    for (const int quality : kQualities) add(quality);
  } else {
    for (const int quality : kQualitiesOfOrdinaryImages) add(quality);
  }
  const ExifInfo exif = photo.Exif();
  list.AddBytes(photograph.name + "/exif", &exif, sizeof(exif));
}

// What follows the EXIF header of a JPEG. That which LibRaw adds to a preview without one has undefined
// bytes.
std::vector<std::uint8_t> WithoutExif(const std::vector<std::uint8_t>& jpeg) {
  constexpr std::size_t kMarkers = 4;  // of the file and of the header
  constexpr std::uint8_t kExifMarker = 0xE1;
  if (jpeg.size() < kMarkers + 2 || jpeg[3] != kExifMarker) return jpeg;
  const std::size_t length = std::size_t{jpeg[kMarkers]} << 8U | jpeg[kMarkers + 1];
  return {jpeg.begin() + static_cast<std::ptrdiff_t>(std::min(kMarkers + length, jpeg.size())), jpeg.end()};
}

void AddPathTools(const Photograph& photograph, ChecksumList& list) {
  list.AddHash(photograph.name + "/hash", engine::PerceptualHash(photograph.path));
  list.AddBytes(photograph.name + "/thumbnail", WithoutExif(engine::ExtractThumbnail(photograph.path)));
}

void AddSubject(const Photograph& photograph, const std::string& folder, ChecksumList& list) {
  constexpr int kQuarter = 4;
  engine::Context photo;
  Load(photo, photograph, kQuarter);
  OnFreshThread([&] { photo.SegmentSubject(); });
  list.AddBytes(photograph.name + "/mask", photo.Mask().data);
  const std::string path = folder + "/cutout.png";
  photo.ExportSubjectPng(path);
  list.AddBytes(photograph.name + "/cutout", FileBytes(path));
  photo.SetBackgroundBlur(60);
  list.AddBytes(photograph.name + "/background_blur_preview", photo.Preview().data);
}

void AddExports(const Photograph& photograph, const std::string& folder, ChecksumList& list) {
  engine::Context photo;
  Load(photo, photograph, 2);
  photo.Process();
  const auto path_of = [&](const std::string& file) { return folder + "/" + file; };
  const auto add = [&](const std::string& file) {
    list.AddBytes(photograph.name + "/export_" + file, FileBytes(path_of(file)));
  };
  for (const int quality : {1, 50, 90, 100}) {
    const std::string file = "quality_" + std::to_string(quality) + ".jpg";
    photo.ExportJpeg(path_of(file), quality, false);
    add(file);
  }
  photo.ExportJpeg(path_of("with_exif.jpg"), 80, true);
  add("with_exif.jpg");
  photo.ExportPng(path_of("8_bits.png"));
  add("8_bits.png");
  photo.ExportPng(path_of("16_bits.png"), engine::BitDepth::k16);
  add("16_bits.png");
  photo.ExportTiff(path_of("16_bits.tif"));
  add("16_bits.tif");
}

// The suggestions for the 256 median levels an image can have. They depend on log2f, of which some C
// libraries round some results differently.
void AddExposures(const std::string& folder, ChecksumList& list) {
  constexpr int kSide = 4;
  const std::string path = folder + "/level.png";
  api::SaveOptions options;
  options.overwrite = LUMVIK_HOST_OVERWRITE_ANY;
  std::vector<double> exposures;
  engine::Context photo;
  for (int level = 0; level < LUMVIK_HISTOGRAM_BINS; ++level) {
    const api::Bytes pixels(kSide * kSide, static_cast<std::uint8_t>(level));
    api::WritePng(path, {kSide, kSide, 1, pixels}, options);
    photo.Load(path);
    exposures.push_back(static_cast<double>(photo.AutoExposure()));
  }
  list.AddDoubles("auto_exposure_of_levels", exposures);
}

// Names that no single code page of Windows can represent.
void AddForeignName(const Photograph& photograph, const std::string& folder, ChecksumList& list) {
  const std::string path = folder + u8"/Foto_été_фото_写真.png";
  engine::Context photo;
  Load(photo, photograph);
  photo.ExportPng(path);
  list.AddBytes("foreign_name/export", FileBytes(path));
  photo.Load(path);
  list.AddBytes("foreign_name/default_preview", photo.Preview().data);
  list.AddHash("foreign_name/hash", engine::PerceptualHash(path));
}

}  // namespace

void AddEngineChecksums(const std::vector<Photograph>& photographs, const std::string& folder,
                        ChecksumList& list) {
  for (const Photograph& photograph : photographs) {
    AddLoads(photograph, list);
    if (photograph.has_preview) AddPathTools(photograph, list);
    if (photograph.is_raw) AddSubject(photograph, folder, list);
  }
  AddExports(PhotographNamed("sample_small.ARW", photographs), folder, list);
  AddExports(PhotographNamed("eiffel_gps_north_east.jpg", photographs), folder, list);
  AddExposures(folder, list);
  AddForeignName(PhotographNamed("small_8_bits.png", photographs), folder, list);
}

}  // namespace lumvik::checksums
