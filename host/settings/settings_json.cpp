#include "settings/settings_json.h"

#include <algorithm>
#include <cstddef>
#include <ios>
#include <set>
#include <sstream>
#include <utility>

#include "settings/json_writer.h"

namespace lumvik::host {
namespace {

// Far longer than any key of a setting. Without a limit, a long key that encloses many others, or that many
// enclose, would take memory quadratic in the size of the text.
constexpr std::size_t kMaxJoinedKey = 256;

constexpr std::size_t kMaxDepth = 8;

// Builds the values and records the line of each key, from the library's events, each of which returns
// whether to go on.
class SettingsJsonParser {
 public:
  explicit SettingsJsonParser(const std::string& text) : text_(text), stream_(text), counted_(text.begin()) {}

  LocatedJson Parse() {
    RefuseNul();
    Json::sax_parse(stream_, this);
    return std::move(json_);
  }

  // NOLINTBEGIN(readability-identifier-naming, readability-convert-member-functions-to-static): the names of
  // the library
  bool null() { return Add(JsonValue::Kind::kOther, "null"); }
  bool boolean(bool flag) { return Add(JsonValue::Kind::kFlag, JsonText(flag), flag ? 1.0F : 0.0F); }
  bool number_integer(std::int64_t number) {
    return Add(JsonValue::Kind::kInteger, std::to_string(number), static_cast<float>(number));
  }
  bool number_unsigned(std::uint64_t number) {
    return Add(JsonValue::Kind::kInteger, std::to_string(number), static_cast<float>(number));
  }
  bool number_float(float number, const std::string& /*text*/) {
    return Add(JsonValue::Kind::kFloat, JsonText(number), number);
  }
  bool string(const std::string& text) { return Add(JsonValue::Kind::kOther, JsonText(text)); }
  bool binary(const Json::binary_t& /*bytes*/) { return false; }

  bool start_object(std::size_t /*size*/) {
    EnterObject(Level());
    return Begin(JsonValue::Kind::kObject);
  }
  bool start_array(std::size_t /*size*/) { return Begin(JsonValue::Kind::kList); }
  bool end_object() { return End(); }
  bool end_array() { return End(); }
  bool key(const std::string& key) {
    NoteKey(Level() - 1, key);
    member_ = key;
    return true;
  }

  // "[json.exception.parse_error.101] parse error at line 3, column 5: details"
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/, const Json::exception& error) {
    if (dynamic_cast<const Json::out_of_range*>(&error) != nullptr) {
      throw JsonFault(Line(), key_, "the number is too large");
    }
    const std::string text = error.what();
    throw JsonFault(Line(), key_.empty() ? "" : "after " + key_, text.substr(text.find(": ") + 2));
  }

  // NOLINTEND(readability-identifier-naming, readability-convert-member-functions-to-static)

 private:
  // The number of open objects and lists.
  std::size_t Level() const { return depth_; }

  bool Add(JsonValue::Kind kind, std::string text, float number = 0) {
    Place({kind, std::move(text), number});
    return true;
  }

  bool Begin(JsonValue::Kind kind) {
    JsonValue* const placed = Place({kind, "", 0});
    if (placed != nullptr) open_.push_back(placed);
    ++depth_;
    return true;
  }

  bool End() {
    if (--depth_ < open_.size()) open_.pop_back();
    return true;
  }

  // Null for a value that is left out. The address is good until the next member of the same value, by when
  // this one is no longer open.
  JsonValue* Place(JsonValue value) {
    if (depth_ == 0) {
      json_.root = std::move(value);
      return &json_.root;
    }
    if (depth_ > open_.size() || depth_ > kMaxDepth) return nullptr;
    open_.back()->members.emplace_back(std::exchange(member_, ""), std::move(value));
    return &open_.back()->members.back().second;
  }

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
  std::string member_;                       // the key of the next value
  std::size_t depth_ = 0;
  std::vector<JsonValue*> open_;  // of the objects and lists that are not left out
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
  const std::string quoted = JsonText(key);  // escaped, to keep the message on one line
  const std::string named = key.empty() ? "" : quoted.substr(1, quoted.size() - 2) + ": ";
  return {LUMVIK_HOST_INVALID_ARGUMENT, "line " + std::to_string(line) + ": " + named + why};
}

}  // namespace lumvik::host
