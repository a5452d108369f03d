// Conversion of Camera Raw crops, which refer to the image as stored.
#include <cmath>
#include <cstdint>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <sstream>

#include "command_test.h"
#include "exif_file.h"
#include "xmp_file.h"

namespace lumvik::test {
namespace {

using Json = nlohmann::json;

constexpr int kWidth = 600;
constexpr int kHeight = 400;

struct Corners {
  double left;
  double top;
  double right;
  double bottom;
};

std::string CropAttributes(const Corners& corners, double angle, const std::string& has_crop = "True") {
  std::ostringstream text;
  text << std::setprecision(9) << "crs:HasCrop=\"" << has_crop << "\" crs:CropLeft=\"" << corners.left
       << "\" crs:CropTop=\"" << corners.top << "\" crs:CropRight=\"" << corners.right
       << "\" crs:CropBottom=\"" << corners.bottom << "\" crs:CropAngle=\"" << angle << '"';
  return text.str();
}

class CropImportTest : public CommandTest {
 protected:
  Json Imported(const std::string& input) const {
    const ProcessResult result = RunProcess({LUMVIK_COMMAND, "settings", "import", input});
    EXPECT_EQ(result.status, kSuccess) << result.err;
    return Json::parse(result.out);
  }

  Json ImportedXmp(const std::string& attributes) const {
    WriteFile(Path("in.xmp"), Xmp(attributes));
    return Imported(Path("in.xmp"));
  }

  static void ExpectCrop(const Json& settings, const Corners& expected, double tolerance) {
    const Json& crop = settings.at("crop");
    EXPECT_NEAR(crop.at("x").get<double>(), expected.left, tolerance);
    EXPECT_NEAR(crop.at("y").get<double>(), expected.top, tolerance);
    EXPECT_NEAR(crop.at("w").get<double>(), expected.right - expected.left, tolerance);
    EXPECT_NEAR(crop.at("h").get<double>(), expected.bottom - expected.top, tolerance);
  }
};

TEST_F(CropImportTest, AnUnrotatedCropIsUnchanged) {
  const Json settings = ImportedXmp(CropAttributes({0.1, 0.2, 0.9, 0.8}, 0));
  ExpectCrop(settings, {0.1, 0.2, 0.9, 0.8}, 1e-6);
  EXPECT_EQ(settings.at("rotation"), 0);
}

TEST_F(CropImportTest, DisabledAndIncompleteCropsAreIgnored) {
  EXPECT_FALSE(ImportedXmp(CropAttributes({0.1, 0.2, 0.9, 0.8}, 5, "False")).contains("crop"));
  const Json half = ImportedXmp(R"(crs:HasCrop="True" crs:CropLeft="0.1" crs:CropTop="0.1")");
  EXPECT_FALSE(half.contains("crop"));
  EXPECT_FALSE(half.contains("rotation"));
}

// Values from a program that rotated the crop 0.4, 0.3, 0.9, 0.8 of a 3:2 image about its center.
TEST_F(CropImportTest, ARotatedCropKeepsItsSize) {
  const std::string size = R"(tiff:ImageWidth="1506" tiff:ImageLength="1000" )";
  const Json settings = ImportedXmp(size + CropAttributes({0.374965, 0.36916, 0.925035, 0.73084}, -10));
  EXPECT_EQ(settings.at("rotation"), -10);
  EXPECT_NEAR(settings.at("crop").at("w").get<double>(), 0.5, 0.001);
  EXPECT_NEAR(settings.at("crop").at("h").get<double>(), 0.5, 0.001);
}

TEST_F(CropImportTest, ARotatedCropIsClippedToTheImage) {
  const std::string size = R"(tiff:ImageWidth="1000" tiff:ImageLength="1000" )";
  // Its lower right corner is 0.136 below the image.
  const Json settings = ImportedXmp(size + CropAttributes({0.2, 0.6, 0.05, 0.95}, 45));
  ExpectCrop(settings, {0.35858, 0.78284, 0.5, 1}, 1e-5);
}

TEST_F(CropImportTest, ACropIsClippedAtEveryEdge) {
  ExpectCrop(ImportedXmp(CropAttributes({-0.2, 0.1, 0.5, 0.6}, 0)), {0, 0.1, 0.5, 0.6}, 1e-6);
  ExpectCrop(ImportedXmp(CropAttributes({0.1, -0.2, 0.5, 0.6}, 0)), {0.1, 0, 0.5, 0.6}, 1e-6);
  ExpectCrop(ImportedXmp(CropAttributes({0.1, 0.2, 1.5, 0.6}, 0)), {0.1, 0.2, 1, 0.6}, 1e-6);
  ExpectCrop(ImportedXmp(CropAttributes({0.1, 0.2, 0.5, 1.6}, 0)), {0.1, 0.2, 0.5, 1}, 1e-6);
}

TEST_F(CropImportTest, ACropOutsideTheImageIsIgnored) {
  for (const Corners& corners : {Corners{1.1, 0.1, 1.9, 0.9}, Corners{0.1, -0.9, 0.9, -0.1},
                                 Corners{3, 0.5, 3, 0.5}, Corners{1e308, 0, 1e308, 1}}) {
    for (const double angle : {0.0, 30.0}) {
      const Json settings = ImportedXmp(CropAttributes(corners, angle));
      EXPECT_FALSE(settings.contains("crop")) << corners.left << ' ' << angle;
      EXPECT_FALSE(settings.contains("rotation")) << corners.left << ' ' << angle;
    }
  }
}

TEST_F(CropImportTest, AnInvalidAngleDiscardsTheCrop) {
  for (const char* angle : {"1000", "-180.001", "nan", "ten"}) {
    std::string attributes = CropAttributes({0.1, 0.2, 0.9, 0.8}, 7);
    attributes.replace(attributes.find("\"7\""), 3, std::string("\"") + angle + "\"");
    const Json settings = ImportedXmp(attributes);
    EXPECT_FALSE(settings.contains("crop")) << angle;
    EXPECT_FALSE(settings.contains("rotation")) << angle;
  }
}

TEST_F(CropImportTest, AnUnknownOrientationIsUpright) {
  const std::string size = R"(tiff:ImageWidth="1500" tiff:ImageLength="1000" )";
  const std::string crop = CropAttributes({0.3, 0.3, 0.7, 0.7}, 5);
  const Json expected = ImportedXmp(size + crop);
  EXPECT_EQ(ImportedXmp(size + R"(tiff:Orientation="9" )" + crop), expected);
  EXPECT_EQ(ImportedXmp(size + R"(tiff:Orientation="-1" )" + crop), expected);
}

// By EXIF orientation.
class StoredCropTest : public CropImportTest, public ::testing::WithParamInterface<int> {
 protected:
  // Writes a black photograph with a white rectangle, in sensor orientation, and a sidecar with a crop to
  // that rectangle.
  std::string PhotographWithCrop(double angle) const {
    // Clockwise, as in OpenCV, since y points down.
    const cv::RotatedRect rectangle({330, 190}, {240, 150}, static_cast<float>(angle));
    cv::Point2f corners[4];  // clockwise from the bottom left
    rectangle.points(corners);
    cv::Point polygon[4];
    for (int i = 0; i < 4; ++i) polygon[i] = corners[i];
    cv::Mat picture = cv::Mat::zeros(kHeight, kWidth, CV_8UC3);
    cv::fillConvexPoly(picture, polygon, 4, cv::Scalar::all(255));
    const std::string path = Path("in.jpg");
    EXPECT_TRUE(cv::imwrite(path, picture));
    Exiv2::ExifData exif;
    exif["Exif.Image.Orientation"] = static_cast<std::uint16_t>(GetParam());
    WriteExif(path, exif);
    const Corners crop = {corners[1].x / kWidth, corners[1].y / kHeight, corners[3].x / kWidth,
                          corners[3].y / kHeight};
    WriteFile(Path("in.jpg.xmp"), Xmp(CropAttributes(crop, angle)));
    return path;
  }

  // Develops the photograph with the imported settings and expects exactly the rectangle.
  void ExpectTheRectangle(const std::string& photograph) const {
    WriteFile(Path("settings.json"), Imported(photograph).dump());
    const cv::Mat picture = Developed(photograph, Path("out.png"), {"--settings", Path("settings.json")});
    const cv::Size expected = GetParam() < 5 ? cv::Size(240, 150) : cv::Size(150, 240);
    EXPECT_NEAR(picture.cols, expected.width, 2);
    EXPECT_NEAR(picture.rows, expected.height, 2);
    const cv::Rect inside(3, 3, picture.cols - 6, picture.rows - 6);  // rotation blurs the edges
    double darkest = 0;
    cv::minMaxLoc(picture(inside).clone().reshape(1), &darkest);
    EXPECT_GT(darkest, 200);
  }
};
INSTANTIATE_TEST_SUITE_P(All, StoredCropTest, ::testing::Range(1, 9));

TEST_P(StoredCropTest, AnUnrotatedCropShowsTheSameContent) {
  ExpectTheRectangle(PhotographWithCrop(0));
}

TEST_P(StoredCropTest, ARotatedCropShowsTheSameContent) {
  ExpectTheRectangle(PhotographWithCrop(12));
  ExpectTheRectangle(PhotographWithCrop(-7));
}

TEST_P(StoredCropTest, TheOrientationCanComeFromXmp) {
  PhotographWithCrop(12);
  const std::string crop = ReadFile(Path("in.jpg.xmp"));
  const std::string frame = "tiff:ImageWidth=\"600\" tiff:ImageLength=\"400\" tiff:Orientation=\"" +
                            std::to_string(GetParam()) + "\" crs:HasCrop";
  std::string alone = crop;
  alone.replace(alone.find("crs:HasCrop"), std::string("crs:HasCrop").size(), frame);
  WriteFile(Path("alone.xmp"), alone);
  EXPECT_EQ(Imported(Path("alone.xmp")), Imported(Path("in.jpg")));
}

}  // namespace
}  // namespace lumvik::test
