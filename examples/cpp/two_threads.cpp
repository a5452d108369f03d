// Develops one photograph twice in parallel. A Context must be used by one thread at a time, so each has its
// own.
//
//   c++ -std=c++17 two_threads.cpp $(pkg-config --cflags --libs lumvik) -pthread -o two_threads
//   ./two_threads photo.ARW dark.jpg bright.jpg
#include <future>
#include <iostream>
#include <lumvik.hpp>

static void Develop(const std::string& in, const std::string& out, float exposure) {
  lumvik::engine::Context photo;
  photo.Load(in);
  photo.SetTemperature(6500);  // neutral
  photo.SetExposure(exposure);
  photo.ExportJpeg(out);
}

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: two_threads IN DARK.jpg BRIGHT.jpg\n";
    return 2;
  }
  try {
    auto dark = std::async(std::launch::async, Develop, argv[1], argv[2], -1.0F);
    Develop(argv[1], argv[3], 1.0F);
    dark.get();  // rethrows an exception of that thread
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
