// What an editor does while a slider moves: each position is posted, and the newest wins.
//
//   c++ -std=c++17 host_live_preview.cpp $(pkg-config --cflags --libs lumvik_host) -o host_live_preview
//   ./host_live_preview photo.ARW
#include <cstdio>
#include <lumvik_host.hpp>

// Stands in for a window.
struct Window {
  int frames = 0;  // that were shown
  lumvik::api::Size size;
  double green = 0;  // the mean of the last one, 0 to 255

  void Show(const lumvik::api::Frame& frame) {
    double sum = 0;
    for (std::int32_t y = 0; y < frame.height; ++y) {
      const std::uint8_t* row = frame.pixels + static_cast<std::size_t>(y) * frame.stride;
      for (std::int32_t x = 0; x < frame.width; ++x) sum += row[frame.channels * x + 1];
    }
    ++frames;
    size = {frame.width, frame.height};
    green = sum / (static_cast<double>(frame.width) * frame.height);
  }
};

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: host_live_preview IN\n");
    return 2;
  }
  constexpr int kPositions = 100;
  try {
    Window window;
    lumvik::api::Photo photo(argv[1]);  // after the window, which the callbacks use
    // Called once for each posted render. Those that a newer one replaced have no pixels.
    const auto show = [&window](const lumvik::api::Frame& frame) {
      if (frame.status == LUMVIK_HOST_OK) window.Show(frame);
    };
    lumvik::api::PreviewOptions fit;
    fit.max_width = 640;
    fit.max_height = 480;
    lumvik::api::Settings settings;
    for (int position = 1; position <= kPositions; ++position) {
      settings.SetNumber("shadows", static_cast<float>(position));
      photo.Post(settings, show, fit);
    }
    photo.Wait();  // for the latest
    std::printf("%dx%d %.1f\n", window.size.width, window.size.height, window.green);
    std::fprintf(stderr, "%d of %d positions shown\n", window.frames, kPositions);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
