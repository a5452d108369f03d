#include "commands/help.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

namespace lumvik {
namespace {

void PrintHelp(const CLI::App& app, const std::vector<std::string>& words) {
  const CLI::App* command = &app;
  std::string name = app.get_name();
  for (const std::string& word : words) {
    const auto found = command->get_subcommands([&](const CLI::App* sub) { return sub->check_name(word); });
    if (found.empty()) {
      std::string fault = "'" + word;
      throw CLI::ValidationError("COMMAND",
                                 fault.append("' is not a command; see ").append(name).append(" --help"));
    }
    command = found.front();
    name += ' ' + word;
  }
  // App::help() would print the help of the command that was given, which is this one.
  std::cout << app.get_formatter()->make_help(command, name, CLI::AppFormatMode::Normal);
}

}  // namespace

void AddHelpCommand(CLI::App& app) {
  CLI::App* command = app.add_subcommand("help", "Print the help of a command, or this one");
  auto words = std::make_shared<std::vector<std::string>>();
  command->add_option("COMMAND", *words, "The command, such as develop")->type_name("");
  command->callback([&app, words] { PrintHelp(app, *words); });
}

}  // namespace lumvik
