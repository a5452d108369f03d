#include "batch/numbers.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <stdexcept>

#include "files/mark.h"
#include "files/photograph_walk.h"
#include "lumvik_host.hpp"

namespace lumvik {
namespace {

namespace fs = std::filesystem;

constexpr char kPlaceholder[] = "\x01";
constexpr char kDigits[] = "0123456789";
constexpr std::size_t kMaxDigits = 9;

std::string Padded(std::size_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return std::string(width - std::min(width, digits.size()), '0') + digits;
}

// The names, relative to the folder, of the outputs in it, by the fingerprint of their source.
std::multimap<std::uint64_t, std::string> OutputsIn(const std::string& folder) {
  std::multimap<std::uint64_t, std::string> outputs;
  try {
    for (const std::string& path : FindPhotographs(folder).paths) {
      const std::optional<Mark> mark = ReadMark(path);
      if (mark) outputs.emplace(mark->source, fs::path(path).lexically_relative(folder).string());
    }
  } catch (const std::runtime_error&) {
    return outputs;  // no such folder yet
  }
  return outputs;
}

// The number with which the photograph has this name.
std::optional<std::string> NumberIn(const std::string& name, const NamePattern& pattern,
                                    const NameFields& fields) {
  const std::size_t start = NameOf(pattern, fields, kPlaceholder).find(kPlaceholder);
  if (start >= name.size()) return std::nullopt;
  // A digit in the pattern may follow those of the number.
  const std::size_t digits = std::min(name.find_first_not_of(kDigits, start), name.size()) - start;
  for (std::size_t count = 1; count <= std::min(digits, kMaxDigits); ++count) {
    const std::string number = name.substr(start, count);
    if (NameOf(pattern, fields, number) == name) return number;
  }
  return std::nullopt;
}

// Takes an output of the photograph from `outputs`.
std::optional<std::string> TakeNumber(const BatchInput& photograph, const NamePattern& pattern,
                                      const NameFields& fields,
                                      std::multimap<std::uint64_t, std::string>& outputs) {
  try {
    const auto [first, last] = outputs.equal_range(api::Fingerprint(photograph.path));
    for (auto output = first; output != last; ++output) {
      std::optional<std::string> number = NumberIn(output->second, pattern, fields);
      if (!number) continue;
      outputs.erase(output);
      return number;
    }
  } catch (const api::Error&) {
    return std::nullopt;  // unreadable
  }
  return std::nullopt;
}

}  // namespace

std::vector<std::string> CountedNumbers(std::size_t count) {
  std::vector<std::string> numbers;
  numbers.reserve(count);
  const std::size_t width = std::to_string(count).size();
  while (numbers.size() < count) numbers.push_back(Padded(numbers.size() + 1, width));
  return numbers;
}

std::vector<std::string> ContinuedNumbers(const std::vector<BatchInput>& photographs,
                                          const std::vector<NameFields>& fields, const NamePattern& pattern,
                                          const std::string& output_folder) {
  std::multimap<std::uint64_t, std::string> outputs = OutputsIn(output_folder);
  std::vector<std::string> numbers(photographs.size());
  std::set<std::size_t> taken;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::optional<std::string> number = TakeNumber(photographs[i], pattern, fields[i], outputs);
    if (!number) continue;
    numbers[i] = *number;
    taken.insert(std::stoul(*number));
  }
  const std::size_t width = std::to_string(numbers.size()).size();
  std::size_t next = 1;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (!numbers[i].empty()) continue;
    const auto is_free = [&] {
      return taken.count(next) == 0 &&
             !fs::exists(fs::path(output_folder) / NameOf(pattern, fields[i], Padded(next, width)));
    };
    while (!is_free()) ++next;
    numbers[i] = Padded(next++, width);
  }
  return numbers;
}

}  // namespace lumvik
