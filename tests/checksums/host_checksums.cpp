#include "host_checksums.h"

#include "edits.h"
#include "fresh_thread.h"
#include "lumvik_host.hpp"

namespace lumvik::checksums {
namespace {

constexpr int kHalfSize = 2;

api::Photo Opened(const Photograph& photograph, int quality) {
  api::OpenOptions options;
  options.quality = quality;
  return api::Photo(photograph.path, options);
}

api::SaveOptions OptionsOf(lumvik_host_format format) {
  api::SaveOptions options;
  options.format = format;
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  return options;
}

// All 16 bits of a render, compressed without loss.
api::Bytes RenderBytes(api::Photo& photo) {
  api::SaveOptions options = OptionsOf(LUMVIK_HOST_FORMAT_TIFF);
  options.no_profile = 1;
  return photo.SaveBytes(options);
}

// Dehaze blurs as OpenCV does, which fuses multiplication and addition where the processor can, and doubles
// the difference in the last bit where a threshold follows. Everything else has the same bytes on every
// processor.
bool DependsOnTheProcessor(const Edit& edit) {
  return edit.settings.Has("dehaze");
}

// The mean levels of red, green, blue and luminance, 0 to 255.
std::vector<double> MeanLevels(api::Photo& photo) {
  const api::Histogram histogram = photo.GetHistogram();
  std::vector<double> means;
  for (const auto* counts : {histogram.red, histogram.green, histogram.blue, histogram.luminance}) {
    double sum = 0;
    double pixels = 0;
    for (int level = 0; level < LUMVIK_HOST_HISTOGRAM_BINS; ++level) {
      sum += static_cast<double>(counts[level]) * level;
      pixels += counts[level];
    }
    means.push_back(sum / pixels);
  }
  return means;
}

void AddRender(api::Photo& photo, const Edit& edit, const std::string& name, ChecksumList& list) {
  constexpr double kLevelTolerance = 1e-4;
  photo.SetSettings(edit.settings);
  OnFreshThread([&] { photo.Render(); });
  if (DependsOnTheProcessor(edit)) {
    list.AddNear(name + "/" + edit.name + "_levels", MeanLevels(photo), kLevelTolerance);
  } else {
    list.AddBytes(name + "/" + edit.name, RenderBytes(photo));
  }
}

void AddShortEdits(const Photograph& photograph, ChecksumList& list) {
  api::Photo photo = Opened(photograph, kHalfSize);
  const std::string name = photograph.name + "/edit";
  for (const Edit& edit : SingleEdits()) AddRender(photo, edit, name, list);
}

void AddSources(const Photograph& photograph, ChecksumList& list) {
  for (int quality = 1; quality <= (photograph.is_raw ? 4 : 1); ++quality) {
    api::Photo photo = Opened(photograph, quality);
    AddRender(photo, {"source", {}}, photograph.name + "/quality_" + std::to_string(quality), list);
  }
}

void AddLongEdits(const Photograph& photograph, ChecksumList& list) {
  api::Photo photo = Opened(photograph, 1);
  AddRender(photo, TypicalEdit(), photograph.name + "/edit", list);
  AddRender(photo, FullEdit(), photograph.name + "/edit", list);
  AddRender(photo, FullEditWithoutDehaze(), photograph.name + "/edit", list);
}

void AddPreviews(const Photograph& photograph, ChecksumList& list) {
  api::Photo photo = Opened(photograph, kHalfSize);
  photo.SetSettings(TypicalEdit().settings);
  const auto add = [&](const std::string& order, const api::PreviewOptions& options) {
    list.AddBytes(photograph.name + "/preview_" + order + "_" + std::to_string(options.max_width),
                  photo.Preview(options).data);
  };
  for (const int side : {0, 256, 97}) {
    api::PreviewOptions options;
    options.max_width = side;
    options.max_height = side;
    add("rgba", options);
    options.channels = 3;
    add("rgb", options);
    options.blue_first = 1;
    add("bgr", options);
    options.channels = 4;
    add("bgra", options);
  }
}

void AddSaves(const Photograph& photograph, ChecksumList& list) {
  api::Photo photo = Opened(photograph, kHalfSize);
  photo.SetSettings(TypicalEdit().settings);
  const auto add = [&](const std::string& name, const api::SaveOptions& options) {
    list.AddBytes(photograph.name + "/save_" + name, photo.SaveBytes(options));
  };
  api::SaveOptions options = OptionsOf(LUMVIK_HOST_FORMAT_JPEG);
  for (const int side : {0, 300}) {
    options.max_width = side;
    for (const int quality : {60, 95}) {
      options.quality = quality;
      add("jpeg_" + std::to_string(quality) + "_width_" + std::to_string(side), options);
    }
  }
  options = OptionsOf(LUMVIK_HOST_FORMAT_PNG);
  add("png_8", options);
  options.bits = 16;
  options.max_width = 300;
  add("png_16_width_300", options);
  options = OptionsOf(LUMVIK_HOST_FORMAT_TIFF);
  options.mark = "checksum";
  add("tiff_with_mark", options);
}

void AddThumbnail(const Photograph& photograph, ChecksumList& list) {
  api::ThumbnailOptions options;
  options.max_width = 128;
  options.max_height = 128;
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  list.AddBytes(photograph.name + "/host_thumbnail", api::ExtractThumbnail(photograph.path, options).data);
  list.AddHash(photograph.name + "/host_hash", api::Hash(photograph.path));
}

void AddExif(const Photograph& photograph, ChecksumList& list) {
  const api::ExifInfo exif = api::ReadExif(photograph.path);
  list.AddBytes(photograph.name + "/host_exif", &exif, sizeof(lumvik_host_exif));
  if (!photograph.is_raw) return;
  list.AddDoubles(photograph.name + "/as_shot", {exif.as_shot_temperature, exif.as_shot_tint});
}

}  // namespace

void AddHostChecksums(const std::vector<Photograph>& photographs, ChecksumList& list) {
  for (const Photograph& photograph : photographs) {
    AddSources(photograph, list);
    AddExif(photograph, list);
    if (photograph.has_preview) AddThumbnail(photograph, list);
  }
  for (const char* name :
       {"sample_small.ARW", "uncompressed.ARW", "eiffel_gps_north_east.jpg", "small.webp"}) {
    AddLongEdits(PhotographNamed(name, photographs), list);
  }
  for (const char* name : {"sample_small.ARW", "eiffel_gps_north_east.jpg"}) {
    const Photograph& photograph = PhotographNamed(name, photographs);
    AddShortEdits(photograph, list);
    AddPreviews(photograph, list);
    AddSaves(photograph, list);
  }
}

}  // namespace lumvik::checksums
