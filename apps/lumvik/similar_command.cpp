#include "similar_command.h"

#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdint>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "hamming_groups.h"
#include "in_range.h"
#include "jobs_option.h"
#include "parallel_hashes.h"
#include "path_tools.h"
#include "photograph_walk.h"
#include "progress_bar.h"
#include "range.h"
#include "reported_failure.h"

namespace lumvik {
namespace {

constexpr Range<int> kThresholds = {0, 64};

// RAW files are 2 to 4 bits away from their exports, and copies at half the size or of low quality as far
// from each other. Different photographs are 32 bits apart on the average; of a hundred million pairs one in
// ten comes as near as 8, and four as near as 10.
constexpr int kUsualThreshold = 8;

struct SimilarOptions {
  std::string folder;
  int threshold = kUsualThreshold;
  unsigned jobs = UsualJobs();
  bool json = false;
};

struct HashedPhotograph {
  std::string path;
  std::uint64_t hash;
};
using Group = std::vector<HashedPhotograph>;

// What looking through a folder came to.
struct Findings {
  std::vector<Group> groups;
  std::vector<std::string> failures;  // a sentence for the user each
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

Findings LookThrough(const SimilarOptions& options) {
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

// A paragraph for each group, its lines as `lumvik hash` prints them.
void PrintText(const std::vector<Group>& groups) {
  const char* separator = "";
  for (const Group& group : groups) {
    std::cout << separator;
    for (const HashedPhotograph& photograph : group) {
      std::cout << HexOf(photograph.hash) << "  " << photograph.path << '\n';
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
  // A name need not be UTF-8, which JSON must be.
  std::cout << json.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

void PrintSimilar(const SimilarOptions& options) {
  const Findings findings = LookThrough(options);
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
  CLI::App* command = app.add_subcommand(
      "similar", "Find the photographs in a folder, and the folders within, that look alike");
  auto options = std::make_shared<SimilarOptions>();
  command->add_option("DIR", options->folder, "The folder to look through")->required()->type_name("");
  command
      ->add_option("--threshold", options->threshold,
                   "In how many of the 64 bits of their hashes two photographs that look alike may differ "
                   "(default 8)")
      ->type_name("BITS")
      ->check(InRange(kThresholds));
  AddJobsOption(*command, options->jobs, "Threads to work with (default: one for each processor)");
  command->add_flag("--json", options->json, "Print JSON");
  command->callback([options] { PrintSimilar(*options); });
}

}  // namespace lumvik
