/* What an editor does while a slider moves: each position is posted, and the newest wins.
 *
 *   cc host_live_preview.c $(pkg-config --cflags --libs lumvik_host) -o host_live_preview
 *   ./host_live_preview photo.ARW
 */
#include <lumvik_host.h>
#include <stdio.h>

enum { kPositions = 100 };

/* Stands in for a window. */
typedef struct Window {
  int frames;        /* that were shown */
  int width, height; /* of the last one */
  double green;      /* its mean, 0 to 255 */
} Window;

/* Called once for each posted render. Those that a newer one replaced have no pixels. */
static void Show(const lumvik_host_frame* frame, void* user) {
  Window* window = user;
  if (frame->status != LUMVIK_HOST_OK) return;
  double green = 0;
  for (int32_t y = 0; y < frame->height; ++y) {
    const uint8_t* row = frame->pixels + (size_t)y * frame->stride;
    for (int32_t x = 0; x < frame->width; ++x) green += row[frame->channels * x + 1];
  }
  ++window->frames;
  window->width = frame->width;
  window->height = frame->height;
  window->green = green / ((double)frame->width * frame->height);
}

static lumvik_host_status MoveSlider(lumvik_host_photo* photo, lumvik_host_settings* settings,
                                     Window* window) {
  const lumvik_host_preview_options fit = {.struct_size = sizeof fit, .max_width = 640, .max_height = 480};
  lumvik_host_status status = LUMVIK_HOST_OK;
  for (int position = 1; position <= kPositions && status == LUMVIK_HOST_OK; ++position) {
    status = lumvik_host_settings_set_number(settings, "shadows", (float)position);
    if (status == LUMVIK_HOST_OK) status = lumvik_host_post(photo, settings, &fit, Show, window, NULL);
  }
  return status == LUMVIK_HOST_OK ? lumvik_host_wait(photo, 0, -1) : status; /* 0: the latest */
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: host_live_preview IN\n");
    return 2;
  }
  Window window = {0};
  lumvik_host_photo* photo = NULL;
  lumvik_host_settings* settings = NULL;
  lumvik_host_status status = lumvik_host_open(argv[1], NULL, &photo);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_create(&settings);
  if (status == LUMVIK_HOST_OK) status = MoveSlider(photo, settings, &window);
  if (status != LUMVIK_HOST_OK) fprintf(stderr, "%s\n", lumvik_host_last_error());
  lumvik_host_settings_close(settings);
  lumvik_host_close(photo); /* no callback runs afterwards */
  if (status != LUMVIK_HOST_OK) return 1;
  printf("%dx%d %.1f\n", window.width, window.height, window.green);
  fprintf(stderr, "%d of %d positions shown\n", window.frames, kPositions);
  return 0;
}
