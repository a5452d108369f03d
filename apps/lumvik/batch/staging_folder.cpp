#include "batch/staging_folder.h"

#include <functional>
#include <sstream>
#include <stdexcept>
#include <system_error>
#include <utility>

namespace lumvik {
namespace {

namespace fs = std::filesystem;

std::string StagingName(const fs::path& target) {
  std::ostringstream name;
  name << ".lumvik-" << std::hex << std::hash<std::string>()(target.filename().string());
  return name.str();
}

}  // namespace

StagingFolder::StagingFolder(fs::path target) : target_(std::move(target)), name_(StagingName(target_)) {
  std::error_code error;
  fs::remove_all(Folder(), error);
  if (!error) fs::create_directory(Folder(), error);
  if (error) {
    throw std::runtime_error("cannot write into the folder '" + target_.parent_path().string() +
                             "': " + error.message());
  }
}

StagingFolder::~StagingFolder() {
  std::error_code ignored;
  fs::remove_all(Folder(), ignored);
}

std::string StagingFolder::StagedPath() const {
  return (Folder() / target_.filename()).string();
}

void StagingFolder::Commit() const {
  std::error_code error;
  if (fs::exists(target_, error)) fs::permissions(StagedPath(), fs::status(target_).permissions(), error);
  if (!error) fs::rename(StagedPath(), target_, error);
  if (error) throw std::runtime_error("cannot write '" + target_.string() + "': " + error.message());
}

std::string StagingFolder::InTermsOfTarget(std::string text) const {
  const std::string step = name_ + '/';
  const std::string end = '/' + name_;
  for (const std::string& part : {step, end}) {
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part)) {
      text.erase(at, part.size());
    }
  }
  return text;
}

fs::path StagingFolder::Folder() const {
  return target_.parent_path() / name_;
}

}  // namespace lumvik
