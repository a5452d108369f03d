#include "develop/settings_json.h"

#include <algorithm>
#include <cstddef>
#include <ios>
#include <set>
#include <sstream>
#include <utility>

namespace lumvik {
namespace {

// Parses JSON and records the line of each key.
class Parser {
 public:
  explicit Parser(const std::string& text) : text_(text), stream_(text), counted_(text.begin()) {}

  LocatedJson Parse() {
    const auto note = [this](int depth, Json::parse_event_t event, const Json& parsed) {
      const auto level = static_cast<std::size_t>(depth);
      if (event == Json::parse_event_t::object_start) EnterObject(level);
      if (event == Json::parse_event_t::key) NoteKey(level - 1, parsed.get<std::string>());
      return true;
    };
    try {
      json_.root = Json::parse(stream_, note);
    } catch (const Json::parse_error& error) {
      // "[json.exception.parse_error.101] parse error at line 3, column 5: details"
      const std::string text = error.what();
      throw JsonFault(Line(), key_.empty() ? "" : "after " + key_, text.substr(text.find(": ") + 2));
    } catch (const Json::out_of_range&) {
      throw JsonFault(Line(), key_, "the number is too large");
    }
    return std::move(json_);
  }

 private:
  // The line of the last character read, which may be one past the current token.
  int Line() {
    const std::streamoff read = stream_.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in);
    const auto last = std::max(counted_, text_.begin() + std::max<std::streamoff>(read - 1, 0));
    line_ += static_cast<int>(std::count(counted_, last, '\n'));
    counted_ = last;
    return line_;
  }

  void EnterObject(std::size_t level) {
    parents_.resize(level);  // arrays count as levels but have no key
    parents_.push_back(key_);
    keys_.resize(level);
    keys_.emplace_back();
  }

  void NoteKey(std::size_t level, const std::string& key) {
    key_ = JoinKeys(parents_[level], key);
    json_.lines.emplace(key_, Line());
    if (!keys_[level].insert(key).second) throw JsonFault(Line(), key_, "duplicate key");
  }

  const std::string& text_;
  std::istringstream stream_;
  std::string::const_iterator counted_;  // lines are counted up to here
  int line_ = 1;
  std::string key_;                          // the most recent one
  std::vector<std::string> parents_;         // the keys of the enclosing objects
  std::vector<std::set<std::string>> keys_;  // the keys seen in each of them
  LocatedJson json_;
};

}  // namespace

std::string JoinKeys(const std::string& parent, const std::string& key) {
  return parent.empty() ? key : parent + "." + key;
}

LocatedJson ParseJson(const std::string& text) {
  return Parser(text).Parse();
}

std::runtime_error JsonFault(int line, const std::string& key, const std::string& why) {
  const std::string quoted = Json(key).dump();  // escaped, to keep the message on one line
  const std::string named = key.empty() ? "" : quoted.substr(1, quoted.size() - 2) + ": ";
  return std::runtime_error("line " + std::to_string(line) + ": " + named + why);
}

}  // namespace lumvik
