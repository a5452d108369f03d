// Develops a photograph with the values that the automatic tools suggest.
//
//   c++ -std=c++17 auto_tools.cpp $(pkg-config --cflags --libs lumvik) -o auto_tools
//   ./auto_tools photo.ARW photo.jpg
#include <cstdio>
#include <lumvik.hpp>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: auto_tools IN OUT.jpg\n");
    return 2;
  }
  try {
    lumvik::engine::Context photo;
    photo.Load(argv[1]);
    const lumvik::engine::Enhancement enhancement = photo.AutoEnhance();
    const lumvik::engine::Crop crop = photo.AutoCrop();
    const float lean = photo.AutoStraighten();

    std::printf("exposure %.2f, contrast %.0f, crop %.3f %.3f %.3f %.3f, lean %.2f\n", enhancement.exposure,
                enhancement.contrast, crop.x, crop.y, crop.w, crop.h, lean);
    photo.Apply(enhancement);
    photo.SetCrop(crop);
    photo.SetRotation(-lean);  // turns counter-clockwise
    photo.ExportJpeg(argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
