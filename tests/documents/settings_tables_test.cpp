// The documentation of the settings agrees with what the host library says of them.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "lumvik_host.h"

namespace lumvik::test {
namespace {

std::string Document(const std::string& name) {
  std::ifstream file(LUMVIK_DOCUMENTS "/" + name);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The settings that are an option with one number. Keys with a dot share an option with others.
std::vector<lumvik_host_setting_info> SingleNumbers() {
  std::vector<lumvik_host_setting_info> numbers;
  for (size_t i = 0; i < lumvik_host_setting_count(); ++i) {
    lumvik_host_setting_info info{};
    info.struct_size = sizeof(info);
    EXPECT_EQ(lumvik_host_describe_setting(i, &info), LUMVIK_HOST_OK);
    const bool is_single = std::string(info.key).find('.') == std::string::npos;
    if (info.kind == LUMVIK_HOST_NUMBER && is_single) numbers.push_back(info);
  }
  return numbers;
}

// The start of a row: "| `--exposure` | -10..10". A unit may follow.
std::string RowStart(const lumvik_host_setting_info& setting) {
  std::string option = setting.key;
  std::replace(option.begin(), option.end(), '_', '-');
  std::ostringstream row;
  row << "| `--" << option << "` | " << setting.minimum << ".." << setting.maximum;
  return row.str();
}

// The next field: " | 0 |".
std::string Default(const lumvik_host_setting_info& setting) {
  std::ostringstream field;
  field << " | " << setting.neutral_value << " |";
  return field.str();
}

class SettingsTablesTest : public testing::TestWithParam<const char*> {};

TEST_P(SettingsTablesTest, HaveARowForEverySetting) {
  const std::string document = Document(GetParam());
  const std::vector<lumvik_host_setting_info> settings = SingleNumbers();
  ASSERT_FALSE(settings.empty());
  for (const lumvik_host_setting_info& setting : settings) {
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

TEST(SettingsFileExampleTest, IsASettingsFile) {
  const std::string document = Document("command_line.md");
  const std::string fence = "```json\n";
  const size_t begin = document.find(fence, document.find("### Settings files"));
  ASSERT_NE(begin, std::string::npos);
  const size_t start = begin + fence.size();
  const std::string json = document.substr(start, document.find("```", start) - start);
  lumvik_host_settings* settings = nullptr;
  EXPECT_EQ(lumvik_host_settings_from_json(json.data(), json.size(), &settings), LUMVIK_HOST_OK)
      << lumvik_host_last_error();
  lumvik_host_settings_close(settings);
}

}  // namespace
}  // namespace lumvik::test
