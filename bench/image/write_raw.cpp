// Writes the RAW file of the benchmarks, for other programs.
//
//   lumvik_write_raw FILE
#include <cstdlib>
#include <iostream>

#include "large_raw.h"
#include "support/file_bytes.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: lumvik_write_raw FILE\n";
    return EXIT_FAILURE;
  }
  lumvik::test::WriteBytes(argv[1], lumvik::bench::LargeRaw());
  return EXIT_SUCCESS;
}
