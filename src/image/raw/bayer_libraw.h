// LibRaw up to the point where pixels are touched.
#ifndef LUMVIK_IMAGE_RAW_BAYER_LIBRAW_H_
#define LUMVIK_IMAGE_RAW_BAYER_LIBRAW_H_

#include <array>
#include <cstdint>

#include "image/guarded_libraw.h"
#include "image/raw/bayer_sensor.h"

namespace lumvik {

// For ordinary Bayer sensors: LibRaw's own dcraw_process() works out black levels, white level, multipliers
// and matrix with all its checks and error codes, but its loops over the pixels only record what they would
// apply.
class BayerLibRaw : public GuardedLibRaw {
 public:
  // Whether LibRaw would develop the unpacked photograph by the very steps that we know. Only then may
  // ProcessWithoutPixels() take the place of dcraw_process().
  bool IsOrdinaryBayer();
  int ProcessWithoutPixels();

  // After success. False if LibRaw ran out of memory for its own image, which it reports as success after
  // dropping all it had.
  bool HasSensor() const { return imgdata.rawdata.raw_image != nullptr; }
  // The sensor's samples belong to this object.
  BayerSensor Sensor();
  // LibRaw's transfer curve for its processing parameters, a table of 65536 values.
  const uint16_t* TransferCurve();

 protected:
  void copy_bayer(unsigned short black[4], unsigned short* data_maximum) override;
  void scale_colors_loop(float multipliers[4]) override;
  void convert_to_rgb_loop(float matrix[3][4]) override;

 private:
  bool HasBayerPattern() const;
  bool LeavesBlackPattern() const;
  int ColorAt(int row, int column) const;
  const uint16_t* Samples() const;
  static void HideRows(void* libraw);
  static void ShowRows(void* libraw);
  static void DoNothing(void* /*libraw*/) {}

  bool records_ = false;
  unsigned filters_ = 0;
  int visible_width_ = 0;
  int visible_height_ = 0;
  std::array<uint16_t, 4> black_ = {};
  std::array<float, 4> multipliers_ = {};
  ColorMatrix srgb_from_camera_ = {};
};

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_RAW_BAYER_LIBRAW_H_
