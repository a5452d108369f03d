#include "commands/similar.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "files/photograph_walk.h"
#include "options/in_range.h"
#include "options/jobs.h"
#include "options/range.h"
#include "similar/hamming_groups.h"
#include "similar/parallel_hashes.h"
#include "similar/photograph_hash.h"
#include "terminal/json.h"
#include "terminal/printable.h"
#include "terminal/progress_bar.h"
#include "terminal/reported_failure.h"

namespace lumvik {
namespace {

constexpr Range<int> kThresholds = {0, 64};

// RAW files are 2 to 4 bits from their exports, as are half-size or low-quality copies from each other.
// Unrelated photographs are 32 bits apart on average: in a billion pairs, about one is within 8 bits and 40
// are within 10.
constexpr int kDefaultThreshold = 8;

struct SimilarOptions {
  std::string folder;
  int threshold = kDefaultThreshold;
  unsigned jobs = DefaultJobs();
  bool json = false;
};

struct HashedPhotograph {
  std::string path;
  std::uint64_t hash;
};
using Group = std::vector<HashedPhotograph>;

struct Findings {
  std::vector<Group> groups;
  std::vector<std::string> failures;  // messages for the user
};

std::vector<HashResult> HashWithProgress(const std::vector<std::string>& paths, unsigned threads) {
  ProgressBar bar(paths.size());
  return HashAll(paths, threads, [&bar] { bar.Advance(); });
}

std::vector<Group> GroupsOf(const std::vector<HashedPhotograph>& photographs, int threshold) {
  std::vector<std::uint64_t> hashes;
  hashes.reserve(photographs.size());
  for (const HashedPhotograph& photograph : photographs) hashes.push_back(photograph.hash);
  std::vector<Group> groups;
  for (const std::vector<std::size_t>& indices : GroupByDistance(hashes, threshold)) {
    Group& group = groups.emplace_back();
    for (const std::size_t i : indices) group.push_back(photographs[i]);
  }
  return groups;
}

Findings FindSimilar(const SimilarOptions& options) {
  FoundPhotographs found = FindPhotographs(options.folder);
  const std::vector<HashResult> results = HashWithProgress(found.paths, options.jobs);
  std::vector<HashedPhotograph> photographs;
  for (std::size_t i = 0; i < results.size(); ++i) {
    if (results[i].hash) {
      photographs.push_back({found.paths[i], *results[i].hash});
    } else {
      found.failures.push_back(results[i].failure);
    }
  }
  return {GroupsOf(photographs, options.threshold), std::move(found.failures)};
}

// A paragraph per group, with lines as printed by `lumvik hash`.
void PrintText(const std::vector<Group>& groups) {
  const char* separator = "";
  for (const Group& group : groups) {
    std::cout << separator;
    for (const HashedPhotograph& photograph : group) {
      std::cout << HexOf(photograph.hash) << "  " << Printable(photograph.path) << '\n';
    }
    separator = "\n";
  }
}

void PrintJson(const std::vector<Group>& groups, int threshold) {
  nlohmann::ordered_json json = {{"threshold", threshold}, {"groups", nlohmann::ordered_json::array()}};
  for (const Group& group : groups) {
    nlohmann::ordered_json& members = json["groups"].emplace_back(nlohmann::ordered_json::array());
    for (const HashedPhotograph& photograph : group) {
      members.push_back({{"hash", HexOf(photograph.hash)}, {"path", photograph.path}});
    }
  }
  PrintIndented(json);
}

void PrintSimilar(const SimilarOptions& options) {
  const Findings findings = FindSimilar(options);
  if (options.json) {
    PrintJson(findings.groups, options.threshold);
  } else {
    PrintText(findings.groups);
  }
  for (const std::string& failure : findings.failures) Report(failure);
  if (!findings.failures.empty()) throw ReportedFailure();
}

}  // namespace

void AddSimilarCommand(CLI::App& app) {
  CLI::App* command =
      app.add_subcommand("similar", "Find groups of similar photographs in a folder and its subfolders");
  auto options = std::make_shared<SimilarOptions>();
  command->add_option("DIR", options->folder, "The folder to search")->required()->type_name("");
  command
      ->add_option("--threshold", options->threshold,
                   "Maximum difference between the hashes of similar photographs, of 64 bits (default 8)")
      ->type_name("BITS")
      ->check(InRange(kThresholds));
  AddJobsOption(*command, options->jobs, "Number of threads (default: one per processor)");
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options] { PrintSimilar(*options); });
}

}  // namespace lumvik
