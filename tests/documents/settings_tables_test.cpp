// The tables of settings in the documentation have a row for each single setting, with its range and default.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "develop/single_settings.h"

namespace lumvik::test {
namespace {

std::string Document(const std::string& name) {
  std::ifstream file(LUMVIK_DOCUMENTS "/" + name);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string Option(std::string key) {
  std::replace(key.begin(), key.end(), '_', '-');
  return "--" + key;
}

// The start of a row: "| `--exposure` | -10..10". A unit may follow.
std::string RowStart(const SingleSetting& setting) {
  return "| `" + Option(setting.key) + "` | " + setting.range.Text();
}

// The next field: " | 0 |".
std::string Default(const SingleSetting& setting) {
  std::ostringstream field;
  field << " | " << setting.initial << " |";
  return field.str();
}

class SettingsTablesTest : public testing::TestWithParam<const char*> {};

TEST_P(SettingsTablesTest, HaveARowForEverySetting) {
  const std::string document = Document(GetParam());
  for (const SingleSetting& setting : kSingleSettings) {
    const size_t row = document.find(RowStart(setting));
    ASSERT_NE(row, std::string::npos) << GetParam() << " has no row " << RowStart(setting);
    const size_t unit = document.find(" | ", row + RowStart(setting).size());
    EXPECT_EQ(document.compare(unit, Default(setting).size(), Default(setting)), 0)
        << RowStart(setting) << " has another default than" << Default(setting);
  }
}

INSTANTIATE_TEST_SUITE_P(, SettingsTablesTest, testing::Values("adjustments.md", "command_line.md"),
                         [](const auto& document) {
                           const std::string name = document.param;
                           return name.substr(0, name.find('.'));
                         });

}  // namespace
}  // namespace lumvik::test
