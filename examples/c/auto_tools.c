/* Develops a photograph with the values that the automatic tools suggest.
 *
 *   cc auto_tools.c $(pkg-config --cflags --libs lumvik) -o auto_tools
 *   ./auto_tools photo.ARW photo.jpg
 */
#include <lumvik.h>
#include <stdio.h>

static int Develop(EngineContext* photo, const char* in, const char* out) {
  float enhance[LUMVIK_ENHANCE_SLOTS], x, y, w, h, lean;
  int status = lumvik_load_arw(photo, in, 1);
  if (status == LUMVIK_OK) status = lumvik_auto_enhance(photo, enhance);
  if (status == LUMVIK_OK) status = lumvik_auto_crop(photo, &x, &y, &w, &h);
  if (status == LUMVIK_OK) status = lumvik_auto_straighten(photo, &lean);
  if (status != LUMVIK_OK) return status;

  printf("exposure %.2f, contrast %.0f, crop %.3f %.3f %.3f %.3f, lean %.2f\n", enhance[0], enhance[2], x, y,
         w, h, lean);
  lumvik_set_exposure(photo, enhance[0]);
  lumvik_set_contrast(photo, enhance[2]);
  lumvik_set_highlights(photo, enhance[3]);
  lumvik_set_shadows(photo, enhance[4]);
  lumvik_set_blacks(photo, enhance[6]);
  lumvik_set_temperature(photo, enhance[7]);
  lumvik_set_saturation(photo, enhance[9]);
  lumvik_set_vibrance(photo, enhance[10]);
  lumvik_set_sharpening_amount(photo, enhance[11]); /* the radius, slot 12, stays as it is */
  lumvik_set_nr_luminance(photo, enhance[14]);
  lumvik_set_nr_color(photo, enhance[15]);
  lumvik_set_crop(photo, x, y, w, h);
  lumvik_set_rotation(photo, -lean); /* turns counter-clockwise */
  return lumvik_export_jpeg(photo, out, 90, 0, 1);
}

int main(int argc, char** argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: auto_tools IN OUT.jpg\n");
    return 2;
  }
  EngineContext* photo = lumvik_create_context();
  if (photo == NULL) return 1;
  const int status = Develop(photo, argv[1], argv[2]);
  if (status != LUMVIK_OK) fprintf(stderr, "%s\n", lumvik_last_error(photo));
  lumvik_destroy_context(photo);
  return status == LUMVIK_OK ? 0 : 1;
}
