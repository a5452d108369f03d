// Loads a photograph, sets adjustments and writes the result.
//
//   c++ -std=c++17 develop.cpp $(pkg-config --cflags --libs lumvik) -o develop
//   ./develop photo.ARW photo.jpg
#include <iostream>
#include <lumvik.hpp>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: develop IN OUT.jpg\n";
    return 2;
  }
  try {
    lumvik::engine::Context photo;
    photo.Load(argv[1]);
    photo.SetTemperature(6500);  // neutral; after the load, which resets it to 5500
    photo.SetExposure(0.5F);     // stops
    photo.SetContrast(20);
    photo.ExportJpeg(argv[2]);
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
