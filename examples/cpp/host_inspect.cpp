// Prints the shooting data of photographs and whether their files are whole.
//
//   c++ -std=c++17 host_inspect.cpp $(pkg-config --cflags --libs lumvik_host) -o host_inspect
//   ./host_inspect photo.ARW ...
#include <cmath>
#include <cstdio>
#include <lumvik_host.hpp>

static void Inspect(const lumvik::api::Photo& photo) {
  const lumvik::api::PhotoInfo info = photo.Info();
  const lumvik::api::ExifInfo exif = photo.Exif();
  std::printf("  %dx%d pixels in memory\n", info.width, info.height);
  std::printf("  %s %s, ISO %d, f/%.1f, %.4f s, %s\n", exif.make, exif.model, exif.iso,
              static_cast<double>(exif.f_number), static_cast<double>(exif.exposure_time), exif.datetime);
  if (!std::isnan(exif.gps_latitude)) {
    std::printf("  at %.4f, %.4f\n", exif.gps_latitude, exif.gps_longitude);
  }
  const lumvik::api::Integrity integrity = photo.CheckIntegrity();
  std::printf("  %s\n", integrity.is_whole != 0 ? "whole" : integrity.reason);
}

int main(int argc, char** argv) {
  lumvik::api::OpenOptions small;
  small.quality = 4;  // fast for RAW files
  int failures = 0;
  for (int i = 1; i < argc; ++i) {
    std::printf("%s\n", argv[i]);
    try {
      Inspect(lumvik::api::Photo(argv[i], small));
    } catch (const lumvik::api::Error& error) {
      std::printf("  %s: %s\n", lumvik::api::StatusName(error.status()).c_str(), error.what());
      ++failures;
    }
  }
  return failures == 0 ? 0 : 1;
}
