/* Loads a photograph, sets adjustments and writes the result.
 *
 *   cc develop.c $(pkg-config --cflags --libs lumvik) -o develop
 *   ./develop photo.ARW photo.jpg
 */
#include <lumvik.h>
#include <stdio.h>

static int Develop(EngineContext* photo, const char* in, const char* out) {
  int status = lumvik_load_arw(photo, in, 1); /* 1: the best RAW decode */
  if (status != LUMVIK_OK) return status;
  lumvik_set_temperature(photo, 6500.0f); /* neutral; after the load, which resets it to 5500 */
  lumvik_set_exposure(photo, 0.5f);       /* stops */
  lumvik_set_contrast(photo, 20.0f);
  return lumvik_export_jpeg(photo, out, 90, 0, 1); /* quality 90, keeping the EXIF */
}

int main(int argc, char** argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: develop IN OUT.jpg\n");
    return 2;
  }
  EngineContext* photo = lumvik_create_context();
  if (photo == NULL) return 1;
  const int status = Develop(photo, argv[1], argv[2]);
  if (status != LUMVIK_OK) fprintf(stderr, "%s\n", lumvik_last_error(photo));
  lumvik_destroy_context(photo);
  return status == LUMVIK_OK ? 0 : 1;
}
