// Lists the numeric settings with their ranges, writes some to a file and reads them back.
//
//   c++ -std=c++17 host_settings.cpp $(pkg-config --cflags --libs lumvik_host) -o host_settings
//   ./host_settings look.json
#include <cstdio>
#include <lumvik_host.hpp>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: host_settings OUT.json\n");
    return 2;
  }
  try {
    for (const lumvik::api::SettingInfo& info : lumvik::api::DescribeSettings()) {
      if (info.kind == LUMVIK_HOST_CURVE) continue;  // points instead of a number
      std::printf("%s: %g to %g, neutral %g\n", info.key, static_cast<double>(info.minimum),
                  static_cast<double>(info.maximum), static_cast<double>(info.neutral_value));
    }
    lumvik::api::Settings look;
    look.SetNumber("vibrance", 30);
    look.SetNumber("hsl.blue.luminance", -10);
    look.SetCurve("tone_curves.master", {{0, 0}, {0.25F, 0.2F}, {1, 1}});
    look.Write(argv[1], true);
    const bool equal = lumvik::api::Settings::Read(argv[1]).Equals(look);
    std::printf("read back: %s\n", equal ? "equal" : "different");
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
