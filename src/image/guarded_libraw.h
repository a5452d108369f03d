// LibRaw, protected from damaged files.
#ifndef LUMVIK_IMAGE_GUARDED_LIBRAW_H_
#define LUMVIK_IMAGE_GUARDED_LIBRAW_H_

#include <libraw/libraw.h>

#include <cstddef>
#include <cstdint>
#include <string>

namespace lumvik {

// Some 800 KB: too large for the stack.
class GuardedLibRaw : public LibRaw {
 public:
  GuardedLibRaw();

  // These are LibRaw's open_file, unpack and unpack_thumb. What a damaged or cut file leaves unset is zero.
  int OpenFile(const std::string& path);
  int UnpackSensor();
  int UnpackPreview();

  int get_decoder_info(libraw_decoder_info_t* decoder) override;

 protected:
  // LibRaw's loops with OpenMP.
  void fuji_decode_loop(const fuji_compressed_params* common, int count, INT64* offsets,
                        unsigned* sizes) override;
  void crxLoadDecodeLoop(void* image, int planes) override;
  void crxLoadFinalizeLoopE3(void* image, int rows) override;

 private:
  static void InspectTag(void* guarded, int tag, int type, int count, unsigned order, void* stream,
                         INT64 base);
  void NoteName(int name, int count, LibRaw_abstract_datastream& stream);
  bool MakePreviewFit();
  void BeforeSeek();
  void AfterRead(uint8_t* bytes, size_t wanted) const;
  size_t SensorBufferSize() const;
  void ClearSensorBuffer();
  bool HasWholeArw2Rows() const;
  void LoadArw2();
  void DecodeArw2();
  void RestoreDecoder();

  using Decoder = void (LibRaw::*)();

  bool is_hasselblad_ = false;
  bool has_long_name_ = false;
  bool awaits_sensor_buffer_ = false;
  bool awaits_preview_buffer_ = false;
  bool clears_byte_after_row_ = false;
  bool is_unpacking_sensor_ = false;
  Decoder libraw_decoder_ = nullptr;  // while LoadArw2() takes its place
};

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_GUARDED_LIBRAW_H_
