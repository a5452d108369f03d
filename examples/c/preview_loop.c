/* What an editor does while a slider moves: set, render and show, with one buffer that is allocated once.
 *
 *   cc preview_loop.c $(pkg-config --cflags --libs lumvik) -o preview_loop
 *   ./preview_loop photo.ARW
 */
#include <lumvik.h>
#include <stdio.h>
#include <stdlib.h>

/* Stands in for a window: prints the mean of green, 0 to 255. */
static void Show(const uint8_t* rgba, int width, int height) {
  double green = 0;
  const size_t pixels = (size_t)width * (size_t)height;
  for (size_t i = 0; i < pixels; ++i) green += rgba[4 * i + 1];
  printf("%dx%d %.1f\n", width, height, green / (double)pixels);
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: preview_loop IN\n");
    return 2;
  }
  EngineContext* photo = lumvik_create_context();
  if (photo == NULL) return 1;
  int status =
      lumvik_load_arw(photo, argv[1], 4); /* 4: a small proxy of a RAW file, large enough for a screen */
  if (status == LUMVIK_OK) {
    lumvik_set_temperature(photo, 6500.0f); /* neutral */
    /* A render can be smaller than the loaded image, because of a crop, but never larger. */
    const int capacity = 4 * lumvik_get_width(photo) * lumvik_get_height(photo);
    uint8_t* rgba = malloc((size_t)capacity);
    for (int slider = -2; slider <= 2 && rgba != NULL && status == LUMVIK_OK; ++slider) {
      lumvik_set_exposure(photo, 0.5f * (float)slider);
      status = lumvik_get_preview(photo, rgba, capacity);
      if (status == LUMVIK_OK) Show(rgba, lumvik_get_width(photo), lumvik_get_height(photo));
    }
    free(rgba);
  }
  if (status != LUMVIK_OK) fprintf(stderr, "%s\n", lumvik_last_error(photo));
  lumvik_destroy_context(photo);
  return status == LUMVIK_OK ? 0 : 1;
}
