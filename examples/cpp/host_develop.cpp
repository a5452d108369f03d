// Develops a photograph with settings that are neutral but for exposure and contrast.
//
//   c++ -std=c++17 host_develop.cpp $(pkg-config --cflags --libs lumvik_host) -o host_develop
//   ./host_develop photo.ARW photo.jpg
#include <iostream>
#include <lumvik_host.hpp>

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: host_develop IN OUT\n";
    return 2;
  }
  try {
    lumvik::api::Photo photo(argv[1]);
    lumvik::api::Settings settings;
    settings.SetNumber("exposure", 0.5F);  // stops
    settings.SetNumber("contrast", 20);
    photo.SetSettings(settings);
    lumvik::api::SaveOptions options;
    options.overwrite = 1;
    photo.Save(argv[2], options);  // with its metadata
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
