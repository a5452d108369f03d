#include "terminal/results.h"

#include <iomanip>
#include <iostream>
#include <sstream>

#include "terminal/printable.h"
#include "terminal/reported_failure.h"
#include "terminal/result_line.h"

namespace lumvik {

void Results::Wrote(const std::string& file, api::Size size) {
  outputs_.push_back({{"path", file}, {"width", size.width}, {"height", size.height}});
  if (PrintsLines()) PrintResult(file, size);
}

void Results::WroteSettings(const std::string& file) {
  outputs_.push_back({{"path", file}});
}

void Results::WouldWrite(const std::string& file) {
  outputs_.push_back({{"path", file}});
  if (PrintsLines()) std::cout << "would write " << Printable(file) << '\n';
}

void Results::ReadSettings(const std::string& file) {
  settings_from_.push_back(file);
  Note("settings from '" + file + "'");
}

void Results::ReadSidecar(const std::string& file) {
  sidecar_ = file;
  ReadSettings(file);
}

void Results::Warn(const std::string& sentence) {
  warnings_.push_back(sentence);
  Show(sentence);
}

void Results::WarnOfDamage(const std::string& sentence, const std::string& reason) {
  damage_ = reason;
  Show(sentence);
}

void Results::WarnOfUnused(api::Photo& photo) {
  std::istringstream lines(photo.Warnings());
  for (std::string line; std::getline(lines, line);) Warn(line);
}

void Results::Show(const std::string& warning) const {
  if (!reporting_.quiet) Report("warning: " + warning);
}

void Results::Note(const std::string& sentence) const {
  if (reporting_.verbose) Report(sentence);
}

void Results::NoteStep(const std::string& done) {
  const Clock::time_point now = Clock::now();
  std::ostringstream text;
  text << done << " in " << std::fixed << std::setprecision(2)
       << std::chrono::duration<double>(now - step_begun_).count() << " s";
  step_begun_ = now;
  Note(text.str());
}

Json Results::Summary() const {
  Json json = Json::object();
  if (reporting_.dry_run) json["dry_run"] = true;
  json["outputs"] = outputs_;
  json["settings_from"] = settings_from_;
  json["damage"] = damage_ ? Json(*damage_) : Json(nullptr);
  json["warnings"] = warnings_;
  return json;
}

void Results::Finish() const {
  if (reporting_.json) {
    PrintIndented(Summary());
  } else if (sidecar_ && PrintsLines()) {
    PrintSidecar(sidecar_);
  }
}

}  // namespace lumvik
