#include "batch/name_fields.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace lumvik {
namespace {

constexpr std::string_view kReserved = "/\\<>:\"|?*{}";
constexpr char kReplacement = '_';
constexpr std::string_view kEnds = " .";

bool IsUnsafe(char c) {
  const auto code = static_cast<unsigned char>(c);
  return code < 0x20 || code == 0x7F || kReserved.find(c) != std::string_view::npos;
}

// Whether the text has digits where the form has '0', and the same characters elsewhere.
bool HasForm(const std::string& text, std::string_view form) {
  return text.size() == form.size() &&
         std::equal(text.begin(), text.end(), form.begin(), [](char c, char expected) {
           return expected == '0' ? c >= '0' && c <= '9' : c == expected;
         });
}

}  // namespace

std::string SafeInFileName(const std::string& text) {
  const std::size_t first = text.find_first_not_of(kEnds);
  if (first == std::string::npos) return kUnknownField;
  std::string safe = text.substr(first, text.find_last_not_of(kEnds) - first + 1);
  std::replace_if(safe.begin(), safe.end(), IsUnsafe, kReplacement);
  return safe;
}

ShotFields ShotFieldsOf(const std::string& datetime, const std::string& make, const std::string& model,
                        const std::string& lens) {
  ShotFields fields{kUnknownField, kUnknownField, SafeInFileName(model.empty() ? make : model),
                    SafeInFileName(lens)};
  if (HasForm(datetime, "0000:00:00 00:00:00") && datetime.compare(0, 4, "0000") != 0) {
    fields.date = datetime.substr(0, 4) + '-' + datetime.substr(5, 2) + '-' + datetime.substr(8, 2);
    fields.time = datetime.substr(11, 2) + datetime.substr(14, 2) + datetime.substr(17, 2);
  }
  return fields;
}

}  // namespace lumvik
