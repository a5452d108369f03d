// What an editor does while a slider moves: set, render and show, with one buffer that is allocated once.
//
//   c++ -std=c++17 preview_loop.cpp $(pkg-config --cflags --libs lumvik) -o preview_loop
//   ./preview_loop photo.ARW
#include <cstdio>
#include <lumvik.hpp>

// Stands in for a window: prints the mean of green, 0 to 255.
static void Show(const std::vector<std::uint8_t>& rgba, lumvik::engine::Size size) {
  double green = 0;
  const auto pixels = static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
  for (std::size_t i = 0; i < pixels; ++i) green += rgba[4 * i + 1];
  std::printf("%dx%d %.1f\n", size.width, size.height, green / static_cast<double>(pixels));
}

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: preview_loop IN\n");
    return 2;
  }
  try {
    lumvik::engine::Context photo;
    photo.Load(argv[1],
               lumvik::engine::RawQuality::kQuarter);  // a small proxy of a RAW file, enough for a screen
    photo.SetTemperature(6500);                        // neutral
    // A render can be smaller than the loaded image, because of a crop, but never larger.
    const auto [width, height] = photo.loaded_size();
    std::vector<std::uint8_t> rgba(4 * static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int slider = -2; slider <= 2; ++slider) {
      photo.SetExposure(0.5F * static_cast<float>(slider));
      Show(rgba, photo.Preview(rgba));
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
