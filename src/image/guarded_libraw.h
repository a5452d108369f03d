// LibRaw, kept from what a damaged file can do to it.
#ifndef LUMVIK_IMAGE_GUARDED_LIBRAW_H_
#define LUMVIK_IMAGE_GUARDED_LIBRAW_H_

#include <libraw/libraw.h>

#include <string>

namespace lumvik {

// Far too large for the stack.
class GuardedLibRaw : public LibRaw {
 public:
  GuardedLibRaw();

  // LibRaw's open_file, for any path.
  int OpenFile(const std::string& path);

  // LibRaw's unpack_thumb. What the end of the file cuts off a preview is zero.
  int UnpackPreview();

 private:
  static void InspectTag(void* guarded, int tag, int type, int count, unsigned order, void* stream,
                         INT64 base);
  void NoteName(int name, int count, LibRaw_abstract_datastream& stream);
  bool MakePreviewFit();
  bool IsTakenAsStored() const;

  bool is_hasselblad_ = false;
  bool has_long_name_ = false;
};

}  // namespace lumvik

#endif  // LUMVIK_IMAGE_GUARDED_LIBRAW_H_
