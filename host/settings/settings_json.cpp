#include "settings/settings_json.h"

#include <algorithm>
#include <cstddef>
#include <ios>
#include <set>
#include <sstream>
#include <utility>

namespace lumvik::host {
namespace {

// Far longer than any key of a setting. Without a limit, a long key that encloses many others, or that many
// enclose, would take memory quadratic in the size of the text.
constexpr std::size_t kMaxJoinedKey = 256;

// Parses JSON and records the line of each key.
class SettingsJsonParser {
 public:
  explicit SettingsJsonParser(const std::string& text) : text_(text), stream_(text), counted_(text.begin()) {}

  LocatedJson Parse() {
    RefuseNul();
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
  // The library takes it for the end of the text.
  void RefuseNul() {
    const std::size_t nul = text_.find('\0');
    if (nul == std::string::npos) return;
    const auto before = std::count(text_.begin(), text_.begin() + static_cast<std::ptrdiff_t>(nul), '\n');
    throw JsonFault(1 + static_cast<int>(before), "", "a NUL character is not JSON");
  }

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
    std::string joined = JoinKeys(parents_[level], key);
    if (joined.size() > kMaxJoinedKey)
      throw JsonFault(Line(), key_.empty() ? "" : "after " + key_, "the key is too long");
    key_ = std::move(joined);
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
  return SettingsJsonParser(text).Parse();
}

Failure JsonFault(int line, const std::string& key, const std::string& why) {
  const std::string quoted = Json(key).dump();  // escaped, to keep the message on one line
  const std::string named = key.empty() ? "" : quoted.substr(1, quoted.size() - 2) + ": ";
  return {LUMVIK_HOST_INVALID_ARGUMENT, "line " + std::to_string(line) + ": " + named + why};
}

}  // namespace lumvik::host
