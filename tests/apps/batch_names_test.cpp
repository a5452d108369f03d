// Output names of `lumvik batch`, and names that are refused up front.
#include <filesystem>

#include "batch/name_fields.h"
#include "batch_fixture.h"
#include "exif_file.h"

namespace lumvik::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

class BatchNamesTest : public BatchTest {
 protected:
  void ExpectNames(const std::string& pattern, const Names& names) const {
    fs::remove_all(Out());
    const ProcessResult result = Batch({"--name", pattern});
    EXPECT_EQ(result.status, kSuccess) << result.err;
    EXPECT_EQ(Outputs(), names) << pattern;
  }

  void ExpectRefusedPattern(const std::string& pattern, const std::string& reason) const {
    ExpectRefusal(Batch({"--name", pattern}), kUsage, "--name: '" + pattern + "' " + reason);
  }
};

TEST_F(BatchNamesTest, FieldsAreReplaced) {
  fs::create_directories(In("b c/d"));
  for (const char* name : {"a.x.png", "b c/e.png", "b c/d/\xC3\xA9.png"}) {
    Photograph(std::string("photos/") + name);
  }
  ExpectNames("{stem}.{ext}", {"a.x.jpg", "e.jpg", "\xC3\xA9.jpg"});
  ExpectNames("{stem}_{n}.jpeg", {"a.x_1.jpeg", "\xC3\xA9_2.jpeg", "e_3.jpeg"});
  ExpectNames("{folder}/{n}.JPG", {"photos/1.JPG", "photos/b c/d/2.JPG", "photos/b c/3.JPG"});
}

TEST_F(BatchNamesTest, NumbersAreZeroPadded) {
  for (int i = 10; i < 20; ++i) Photograph("photos/" + std::to_string(i) + ".png");
  ExpectNames("x{n}.{ext}", {"x01.jpg", "x02.jpg", "x03.jpg", "x04.jpg", "x05.jpg", "x06.jpg", "x07.jpg",
                             "x08.jpg", "x09.jpg", "x10.jpg"});
}

TEST_F(BatchNamesTest, TheFolderOfAFileArgumentIsItsParent) {
  Photograph("photos/a.png");
  std::vector<std::string> arguments = Command();
  arguments.insert(arguments.end(), {"batch", In("a.png"), "-o", Out(), "--name", "{folder}_{stem}.{ext}"});
  EXPECT_EQ(RunProcess(arguments).status, kSuccess);
  EXPECT_EQ(Outputs(), Names({"photos_a.jpg"}));
}

TEST_F(BatchNamesTest, InvalidPatternsAreUsageErrors) {
  Photograph("photos/a.png");
  const std::string brace =
      "has a brace that is not part of {stem}, {n}, {ext}, {folder}, {source_ext}, {date}, {time}, {camera} "
      "or "
      "{lens}";
  ExpectRefusedPattern("{name}.{ext}", brace);
  ExpectRefusedPattern("{stem.{ext}", brace);
  ExpectRefusedPattern("stem}.{ext}", brace);
  ExpectRefusedPattern("{stem", brace);
  ExpectRefusedPattern("../{stem}.{ext}", "leads out of the output folder");
  ExpectRefusedPattern("/tmp/{stem}.{ext}", "leads out of the output folder");
  ExpectRefusedPattern("{stem}.png", "does not end in an extension of the format");
  ExpectRefusedPattern("{stem}", "does not end in an extension of the format");
  ExpectRefusedPattern("", "does not end in an extension of the format");
  EXPECT_FALSE(fs::exists(Out()));
}

TEST_F(BatchNamesTest, AllClashesAreNamedUpFront) {
  fs::create_directory(In("more"));
  for (const char* name : {"a.png", "a.jpg", "b.png", "more/b.jpg", "more/b.tif", "c.png"}) {
    Photograph(std::string("photos/") + name);
  }
  const ProcessResult result = Batch();
  EXPECT_EQ(result.status, kFailure);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "lumvik: '" + In("a.jpg") + "' and '" + In("a.png") + "' would both be written to '" +
                            Out("a.jpg") + "'\nlumvik: '" + In("b.png") + "', '" + In("more/b.jpg") +
                            "' and '" + In("more/b.tif") + "' would all be written to '" + Out("b.jpg") +
                            "'\nlumvik: nothing was developed; use {source_ext} in --name to keep them "
                            "apart, as in --name '{stem}-{source_ext}.{ext}'\n");
  EXPECT_FALSE(fs::exists(Out()));
  EXPECT_EQ(Batch({"--name", "{stem}-{source_ext}.{ext}"}).status, kSuccess);
  EXPECT_EQ(Outputs(), Names({"a-jpg.jpg", "a-png.jpg", "b-jpg.jpg", "b-png.jpg", "b-tif.jpg", "c-png.jpg"}));
}

TEST_F(BatchNamesTest, ClashesOfOneExtensionNeedAnotherField) {
  fs::create_directory(In("more"));
  for (const char* name : {"a.png", "a.jpg", "b.png", "more/b.PNG"})
    Photograph(std::string("photos/") + name);
  const ProcessResult result = Batch();
  EXPECT_EQ(result.status, kFailure);
  EXPECT_NE(
      result.err.find("\nlumvik: nothing was developed; use {n} or {folder} in --name to keep them apart\n"),
      std::string::npos)
      << result.err;
  EXPECT_EQ(Batch({"--name", "{folder}/{stem}_{n}.{ext}"}).status, kSuccess);
  EXPECT_EQ(Outputs(), Names({"photos/a_1.jpg", "photos/a_2.jpg", "photos/b_3.jpg", "photos/more/b_4.jpg"}));
}

TEST_F(BatchNamesTest, InputsAreNeverOverwritten) {
  const std::string before = ReadFile(Photograph("photos/1.jpg"));
  fs::create_directory_symlink(In(), Path("link"));
  for (const std::string& folder : {In(), Path("link"), In("../photos")}) {
    for (const char* pattern : {"{stem}.{ext}", "{n}.{ext}"}) {
      const ProcessResult result =
          RunProcess({LUMVIK_COMMAND, "batch", In(), "-o", folder, "--name", pattern, "--overwrite"});
      EXPECT_EQ(result.status, kFailure);
      EXPECT_EQ(result.err.rfind(
                    "lumvik: cannot write '" + folder + "/1.jpg': it is one of the input photographs\n", 0),
                0U)
          << result.err;
    }
  }
  EXPECT_EQ(ReadFile(In("1.jpg")), before);
}

TEST_F(BatchNamesTest, FieldsOfTheShot) {
  Exiv2::ExifData exif;
  exif["Exif.Photo.DateTimeOriginal"] = "2024:05:31 18:20:07";
  exif["Exif.Image.Make"] = "Lumo";
  exif["Exif.Image.Model"] = "..L/1: \"x\"";
  exif["Exif.Photo.LensModel"] = "50mm f/1.4 ";
  WriteExif(Photograph("photos/a.jpg"), exif);
  Photograph("photos/b.png");
  ExpectNames("{date}_{time}_{camera}_{lens}.{ext}",
              {"2024-05-31_182007_L_1_ _x__50mm f_1.4.jpg", "unknown_unknown_unknown_unknown.jpg"});
}

TEST(NameFieldsTest, InvalidTimesAreUnknown) {
  for (const char* datetime :
       {"", "2024:05:31", "0000:00:00 00:00:00", "2024-05-31 18:20:00", "    :  :     :  :  "}) {
    const ShotFields fields = ShotFieldsOf(datetime, "Maker", "", "");
    EXPECT_EQ(fields.date, "unknown") << datetime;
    EXPECT_EQ(fields.time, "unknown") << datetime;
    EXPECT_EQ(fields.camera, "Maker");
  }
}

TEST(NameFieldsTest, TextsAreSafeInFileNames) {
  EXPECT_EQ(SafeInFileName("../..\\etc\n\x7F"), "_.._etc__");
  EXPECT_EQ(SafeInFileName(" a<b>c:d\"e|f?g*h. "), "a_b_c_d_e_f_g_h");
  EXPECT_EQ(SafeInFileName(". ."), "unknown");
  EXPECT_EQ(SafeInFileName("\xC3\xA9"), "\xC3\xA9");
}

}  // namespace
}  // namespace lumvik::test
