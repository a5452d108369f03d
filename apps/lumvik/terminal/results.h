// What a command did, for the user.
#ifndef LUMVIK_APPS_TERMINAL_RESULTS_H_
#define LUMVIK_APPS_TERMINAL_RESULTS_H_

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "lumvik_host.hpp"
#include "options/reporting.h"
#include "terminal/json.h"

namespace lumvik {

// Prints lines as the command goes along, results to standard output and everything else to standard error,
// and collects the same for a JSON object.
class Results {
 public:
  explicit Results(const Reporting& reporting) : reporting_(reporting) {}

  // An image: "out.jpg 60x40".
  void Wrote(const std::string& file, api::Size size);
  // A settings file, which the user named: no line.
  void WroteSettings(const std::string& file);
  // For --dry-run.
  void WouldWrite(const std::string& file);

  void ReadSettings(const std::string& file);
  // The user may be unaware of this one, so that Finish names it.
  void ReadSidecar(const std::string& file);

  void Warn(const std::string& sentence);
  // `sentence` is the warning, `reason` is what is damaged. Damage is not among the warnings of the summary.
  void WarnOfDamage(const std::string& sentence, const std::string& reason);
  // What the photograph was developed without.
  void WarnOfUnused(api::Photo& photo);

  // With --verbose, prints a line.
  void Note(const std::string& sentence) const;
  // With --verbose, reports the time since the previous step: "decoded in 0.42 s".
  void NoteStep(const std::string& done);

  const std::optional<std::string>& Damage() const { return damage_; }
  const std::vector<std::string>& Warnings() const { return warnings_; }

  // "outputs", "settings_from", "damage" and "warnings".
  Json Summary() const;
  // Prints what is left to print: the summary as JSON, or the sidecar.
  void Finish() const;

 private:
  using Clock = std::chrono::steady_clock;

  void Show(const std::string& warning) const;
  bool PrintsLines() const { return !reporting_.quiet && !reporting_.json; }

  const Reporting reporting_;
  Json outputs_ = Json::array();
  Json settings_from_ = Json::array();
  std::optional<std::string> sidecar_;
  std::optional<std::string> damage_;
  std::vector<std::string> warnings_;
  Clock::time_point step_begun_ = Clock::now();
};

}  // namespace lumvik

#endif  // LUMVIK_APPS_TERMINAL_RESULTS_H_
