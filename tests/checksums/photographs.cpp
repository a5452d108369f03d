#include "photographs.h"

#include <algorithm>
#include <stdexcept>

namespace lumvik::checksums {

std::vector<Photograph> Photographs(const std::string& source) {
  const std::string data = source + "/tests/data/";
  const std::string small = source + "/tests/checksums/photos/";
  std::vector<Photograph> photographs = {
      {"sample_small.ARW", source + "/samples/sample_small.ARW", true, true}};
  for (const char* name : {"uncompressed.ARW", "bitmap_thumb.dng", "jpeg_thumb.dng", "no_thumb.dng"}) {
    photographs.push_back({name, data + name, true, std::string(name) != "no_thumb.dng"});
  }
  for (const char* name : {"cat.jpg", "eiffel_gps_north_east.jpg", "tower_orientation8.jpg"}) {
    photographs.push_back({name, data + name, false, true});
  }
  for (const char* name : {"small.bmp", "small.jpg", "small.webp", "small_8_bits.png", "small_8_bits.tif",
                           "small_16_bits.png", "small_16_bits.tif"}) {
    photographs.push_back({name, small + name, false, true});
  }
  return photographs;
}

const Photograph& PhotographNamed(const std::string& name, const std::vector<Photograph>& photographs) {
  const auto found = std::find_if(photographs.begin(), photographs.end(),
                                  [&](const Photograph& photograph) { return photograph.name == name; });
  if (found == photographs.end()) throw std::invalid_argument("no photograph is named " + name);
  return *found;
}

}  // namespace lumvik::checksums
