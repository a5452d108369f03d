// `lumvik info`: what is known of photographs.
#include <filesystem>
#include <nlohmann/json.hpp>

#include "command_test.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class InfoTest : public CommandTest {
 protected:
  static ProcessResult Info(const std::vector<std::string>& arguments) {
    std::vector<std::string> all = Command();
    all.emplace_back("info");
    all.insert(all.end(), arguments.begin(), arguments.end());
    return RunProcess(all);
  }
  static Json JsonInfo(const std::string& file) { return Json::parse(Info({file, "--json"}).out).at(0); }
};

TEST_F(InfoTest, ARawFileIsDescribed) {
  const ProcessResult result = Info({kRawSample});
  EXPECT_EQ(result.status, kSuccess);
  EXPECT_EQ(result.err, "");
  for (const char* line :
       {"\n  format         camera RAW\n", "\n  size           1600x1066\n", "\n  condition      whole\n"}) {
    EXPECT_NE(result.out.find(line), std::string::npos) << line << result.out;
  }
  EXPECT_EQ(result.out.rfind(kRawSample + "\n", 0), 0U);
  const Json json = JsonInfo(kRawSample);
  EXPECT_EQ(json.at("path"), kRawSample);
  EXPECT_EQ(json.at("format"), "camera RAW");
  EXPECT_EQ(json.at("width"), 1600);
  EXPECT_EQ(json.at("whole"), true);
  EXPECT_EQ(json.at("written_by_lumvik"), false);
  EXPECT_TRUE(json.at("damage").is_null());
}

TEST_F(InfoTest, WhatIsUnknownIsLeftOut) {
  const std::string plain = Photograph("plain.png");
  EXPECT_EQ(Info({plain}).out,
            plain + "\n  format         PNG\n  size           60x40\n  condition      whole\n");
  const Json json = JsonInfo(plain);
  for (const char* key :
       {"make", "model", "lens", "datetime", "iso", "gps_latitude", "as_shot_temperature", "settings"}) {
    EXPECT_TRUE(json.at(key).is_null()) << key;
  }
}

TEST_F(InfoTest, DamageHasItsOwnStatus) {
  const std::string whole = ReadFile(kTower);
  const std::string cut = Path("cut.jpg");
  WriteFile(cut, whole.substr(0, whole.size() / 2));
  const ProcessResult result = Info({cut, kTower});
  EXPECT_EQ(result.status, kDamaged);
  EXPECT_NE(result.out.find("\n  condition      damaged: "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("\n  condition      whole\n"), std::string::npos) << result.out;
  EXPECT_EQ(JsonInfo(cut).at("whole"), false);
  EXPECT_NE(JsonInfo(cut).at("damage"), "");
}

TEST_F(InfoTest, OtherFilesAreDescribedAfterAFailure) {
  const std::string missing = Path("missing.jpg");
  const ProcessResult result = Info({missing, kTower});
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(result.err.find("'" + missing + "'"), std::string::npos) << result.err;
  EXPECT_EQ(result.out.rfind(kTower + "\n", 0), 0U) << result.out;
}

TEST_F(InfoTest, SettingsAndOriginAreFound) {
  const std::string developed = Path("developed.jpg");
  EXPECT_EQ(Develop(kRawSample, developed).status, kSuccess);
  WriteFile(developed + ".lumvik.json", R"({"lumvik": 2})");
  const Json json = JsonInfo(developed);
  EXPECT_EQ(json.at("written_by_lumvik"), true);
  EXPECT_EQ(json.at("settings"), developed + ".lumvik.json");
  const std::string text = Info({developed}).out;
  EXPECT_NE(text.find("\n  origin         written by lumvik\n"), std::string::npos) << text;
  EXPECT_NE(text.find("\n  settings       " + developed + ".lumvik.json\n"), std::string::npos) << text;
  WriteFile(developed, ReadFile(developed) + ' ');
  EXPECT_EQ(JsonInfo(developed).at("written_by_lumvik"), false);
}

TEST_F(InfoTest, ShootingDataIsReadable) {
  const std::string text = Info({kRawSample}).out;
  for (const char* line :
       {"\n  camera         Sony ILCE-7M3\n", "\n  lens           FE 24-105mm F4 G OSS\n",
        "\n  taken          2021-06-15 10:20:30\n", "\n  exposure       1/250 s, f/8, ISO 100, 35 mm\n",
        "\n  position       -33.856800, -151.200000\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << text;
  }
  const Json json = JsonInfo(kRawSample);
  EXPECT_EQ(json.at("model"), "ILCE-7M3");
  EXPECT_EQ(json.at("datetime"), "2021:06:15 10:20:30");
  EXPECT_EQ(json.at("iso"), 100);
  EXPECT_NEAR(json.at("gps_longitude").get<double>(), -151.2, 1e-9);
}

}  // namespace
}  // namespace lumvik::test
