#include "commands/suggest.h"

#include <CLI/CLI.hpp>
#include <iomanip>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "develop/engine.h"
#include "develop/settings_json.h"
#include "develop/suggestions.h"
#include "files/file_paths.h"
#include "options/photograph.h"

namespace lumvik {
namespace {

struct SuggestOptions {
  Photograph photograph;
  bool json = false;
};

// By tool, in output order.
using Suggestions = std::vector<std::pair<std::string, Settings>>;

Suggestions Collect(Engine& engine) {
  return {{"exposure", SuggestedExposure(engine)},
          {"white_balance", SuggestedWhiteBalance(engine)},
          {"enhance", SuggestedEnhancement(engine)},
          {"crop", SuggestedCrop(engine)},
          {"straighten", SuggestedRotation(engine)}};
}

// Calls `print(tool, key, value)` for each value. Keys are in the order of a settings file.
template <typename Print>
void ForEachValue(const Suggestions& suggestions, const Print& print) {
  for (const auto& [tool, settings] : suggestions) {
    for (const SettingRule& rule : SettingRules()) {
      const auto setting = settings.find(rule.key);
      if (setting != settings.end()) print(tool, rule.key, std::get<float>(setting->second));
    }
  }
}

void PrintJson(const Suggestions& suggestions) {
  Json root = Json::object();
  ForEachValue(suggestions, [&](const std::string& tool, const std::string& key, float value) {
    root[tool][key.substr(key.find('.') + 1)] = value;
  });
  std::cout << root.dump(2) << '\n';
}

void PrintTable(const Suggestions& suggestions) {
  std::cout << std::fixed << std::setprecision(4);
  ForEachValue(suggestions, [](const std::string& tool, const std::string& key, float value) {
    std::cout << std::left << std::setw(15) << tool << std::setw(22) << key << std::right << std::setw(10)
              << value << '\n';
  });
}

void Suggest(const SuggestOptions& options) {
  RequireReadable(options.photograph.input);
  Engine engine;
  Load(options.photograph, engine);
  const Suggestions suggestions = Collect(engine);
  if (options.json) {
    PrintJson(suggestions);
  } else {
    PrintTable(suggestions);
  }
}

}  // namespace

void AddSuggestCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("suggest", "Print the settings suggested by the automatic tools");
  auto options = std::make_shared<SuggestOptions>();
  AddInputOptions(*command, options->photograph);
  command->add_flag("--json", options->json, "Print JSON instead of a table");
  command->callback([options] { Suggest(*options); });
}

}  // namespace lumvik
