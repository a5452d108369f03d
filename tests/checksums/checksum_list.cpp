#include "checksum_list.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <istream>
#include <limits>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <utility>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace lumvik::checksums {
namespace {

constexpr char kHeading[] =
    "# What the libraries make of the sample photographs, on every system and processor, in lines \"name "
    "value\" or\n"
    "# \"name numbers tolerance\". To accept an intended change:\n"
    "#\n"
    "#   cmake --build build/release --target update_checksums\n";

template <typename Number>
std::string Text(const std::vector<Number>& numbers) {
  std::ostringstream text;
  text << std::setprecision(std::numeric_limits<Number>::max_digits10);
  for (const Number number : numbers) text << (text.tellp() > 0 ? "," : "") << number;
  return text.str();
}

std::vector<double> Numbers(const std::string& text) {
  std::vector<double> numbers;
  std::istringstream stream(text);
  for (std::string number; std::getline(stream, number, ',');) numbers.push_back(std::stod(number));
  return numbers;
}

std::string Hexadecimal(std::uint64_t number) {
  std::ostringstream text;
  text << std::hex << std::setfill('0') << std::setw(16) << number;
  return text.str();
}

}  // namespace

ChecksumList ChecksumList::Read(std::istream& text) {
  ChecksumList list;
  for (std::string line; std::getline(text, line);) {
    if (line.empty() || line.front() == '#') continue;
    std::istringstream words(line);
    std::string name;
    Entry entry;
    if (!(words >> name >> entry.value))
      throw std::runtime_error("not a line of a list of checksums: " + line);
    words >> entry.tolerance;
    list.Add(name, entry);
  }
  return list;
}

void ChecksumList::Print(std::ostream& text) const {
  text << kHeading;
  for (const auto& [name, entry] : entries_) {
    text << name << ' ' << entry.value << (entry.tolerance.empty() ? "" : " ") << entry.tolerance << '\n';
  }
}

void ChecksumList::AddBytes(const std::string& name, const void* data, std::size_t size) {
  const XXH128_hash_t digest = XXH3_128bits(data, size);
  Add(name, {Hexadecimal(digest.high64) + Hexadecimal(digest.low64), ""});
}

void ChecksumList::AddBytes(const std::string& name, const std::vector<std::uint8_t>& bytes) {
  AddBytes(name, bytes.data(), bytes.size());
}

void ChecksumList::AddFloats(const std::string& name, const std::vector<float>& numbers) {
  Add(name, {Text(numbers), ""});
}

void ChecksumList::AddDoubles(const std::string& name, const std::vector<double>& numbers) {
  Add(name, {Text(numbers), ""});
}

void ChecksumList::AddNear(const std::string& name, const std::vector<double>& numbers, double tolerance) {
  std::ostringstream text;
  text << tolerance;
  Add(name, {Text(numbers), text.str()});
}

void ChecksumList::AddHash(const std::string& name, std::uint64_t hash) {
  Add(name, {Hexadecimal(hash), ""});
}

std::vector<std::string> ChecksumList::Differences(const ChecksumList& actual) const {
  std::vector<std::string> differences;
  for (const auto& [name, entry] : entries_) {
    const auto found = actual.entries_.find(name);
    if (found == actual.entries_.end()) {
      differences.push_back(name + " is missing");
    } else if (!Matches(entry, found->second)) {
      differences.push_back(name + " is " + found->second.value + " instead of " + entry.value);
    }
  }
  for (const auto& [name, entry] : actual.entries_) {
    if (entries_.count(name) == 0) differences.push_back(name + " is not in the list, with " + entry.value);
  }
  std::sort(differences.begin(), differences.end());
  return differences;
}

bool ChecksumList::Matches(const Entry& expected, const Entry& actual) {
  if (expected.tolerance != actual.tolerance) return false;
  if (expected.tolerance.empty()) return expected.value == actual.value;
  const std::vector<double> wanted = Numbers(expected.value);
  const std::vector<double> numbers = Numbers(actual.value);
  const double tolerance = std::stod(expected.tolerance);
  return std::equal(wanted.begin(), wanted.end(), numbers.begin(), numbers.end(),
                    [&](double a, double b) { return std::fabs(a - b) <= tolerance; });
}

void ChecksumList::Add(const std::string& name, Entry entry) {
  if (!entries_.emplace(name, std::move(entry)).second) {
    throw std::runtime_error("two checksums have the name " + name);
  }
}

}  // namespace lumvik::checksums
