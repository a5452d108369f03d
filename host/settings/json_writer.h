// Writes JSON. The library's own values cannot be destroyed when memory is exhausted: they end the process.
#ifndef LUMVIK_HOST_SETTINGS_JSON_WRITER_H_
#define LUMVIK_HOST_SETTINGS_JSON_WRITER_H_

#include <string>
#include <vector>

namespace lumvik::host {

// A single value as JSON. Bytes that are not UTF-8 are replaced; a float has the fewest digits that
// round-trip.
std::string JsonText(const std::string& text);
inline std::string JsonText(const char* text) {
  return JsonText(std::string(text));
}
std::string JsonText(float number);
std::string JsonText(int number);
std::string JsonText(bool flag);

// Objects and lists with their members on lines, indented by two spaces per level.
class JsonWriter {
 public:
  void BeginObject(const std::string& key = "") { Begin(key, '{', '}'); }
  void BeginList(const std::string& key = "") { Begin(key, '[', ']'); }
  void End();

  // A member of an object; an item of a list has no key.
  void Add(const std::string& key, const std::string& json);

  // The text so far.
  const std::string& Text() const { return text_; }

 private:
  void Begin(const std::string& key, char opening, char closing);
  void StartLine(const std::string& key);

  struct Level {
    char closing;
    bool is_empty;
  };
  std::string text_;
  std::vector<Level> levels_;
};

}  // namespace lumvik::host

#endif  // LUMVIK_HOST_SETTINGS_JSON_WRITER_H_
