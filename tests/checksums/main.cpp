// Prints checksums of what the libraries make of the sample photographs, or compares them with a list.
//
//   lumvik_checksums SOURCE FOLDER          prints them
//   lumvik_checksums SOURCE FOLDER LIST     prints only what differs from the list, and then fails
//
// SOURCE is the root of the source tree, FOLDER is where exports are written.
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <vector>

#include "checksum_list.h"
#include "engine_checksums.h"
#include "host_checksums.h"
#include "photographs.h"

namespace {

using lumvik::checksums::ChecksumList;

ChecksumList Computed(const std::string& source, const std::string& folder) {
  std::filesystem::create_directories(std::filesystem::u8path(folder));
  const auto photographs = lumvik::checksums::Photographs(source);
  ChecksumList list;
  AddEngineChecksums(photographs, folder, list);
  AddHostChecksums(photographs, list);
  return list;
}

int Compare(const ChecksumList& actual, const std::string& path) {
  std::ifstream file(std::filesystem::u8path(path));
  if (!file) throw std::runtime_error("cannot read " + path);
  const std::vector<std::string> differences = ChecksumList::Read(file).Differences(actual);
  for (const std::string& difference : differences) std::cout << difference << '\n';
  return differences.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  try {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 2 || arguments.size() > 3) {
      throw std::runtime_error("usage: lumvik_checksums SOURCE FOLDER [LIST]");
    }
    const ChecksumList actual = Computed(arguments[0], arguments[1]);
    if (arguments.size() == 3) return Compare(actual, arguments[2]);
    actual.Print(std::cout);
    return 0;
  } catch (const std::exception& error) {
    std::cerr << "lumvik_checksums: " << error.what() << '\n';
    return 2;
  }
}
