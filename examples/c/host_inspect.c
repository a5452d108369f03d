/* Prints the shooting data of photographs and whether their files are whole.
 *
 *   cc host_inspect.c $(pkg-config --cflags --libs lumvik_host) -o host_inspect
 *   ./host_inspect photo.ARW ...
 */
#include <lumvik_host.h>
#include <math.h>
#include <stdio.h>

/* Damage is a finding here, not a failure. */
static lumvik_host_status PrintIntegrity(lumvik_host_photo* photo) {
  lumvik_host_integrity integrity = {.struct_size = sizeof integrity};
  const lumvik_host_status status = lumvik_host_check(photo, &integrity);
  if (status != LUMVIK_HOST_OK && status != LUMVIK_HOST_DAMAGED) return status;
  printf("  %s\n", integrity.is_whole ? "whole" : integrity.reason);
  return LUMVIK_HOST_OK;
}

static lumvik_host_status Inspect(lumvik_host_photo* photo) {
  lumvik_host_photo_info info = {.struct_size = sizeof info};
  lumvik_host_exif exif = {.struct_size = sizeof exif};
  lumvik_host_status status = lumvik_host_get_info(photo, &info);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_get_exif(photo, &exif);
  if (status != LUMVIK_HOST_OK) return status;
  printf("  %dx%d pixels in memory\n", info.width, info.height);
  printf("  %s %s, ISO %d, f/%.1f, %.4f s, %s\n", exif.make, exif.model, exif.iso, (double)exif.f_number,
         (double)exif.exposure_time, exif.datetime);
  if (!isnan(exif.gps_latitude)) printf("  at %.4f, %.4f\n", exif.gps_latitude, exif.gps_longitude);
  return PrintIntegrity(photo);
}

int main(int argc, char** argv) {
  const lumvik_host_open_options small = {.struct_size = sizeof small, .quality = 4}; /* fast for RAW files */
  int failures = 0;
  for (int i = 1; i < argc; ++i) {
    lumvik_host_photo* photo = NULL;
    printf("%s\n", argv[i]);
    lumvik_host_status status = lumvik_host_open(argv[i], &small, &photo);
    if (status == LUMVIK_HOST_OK) status = Inspect(photo);
    if (status != LUMVIK_HOST_OK) {
      printf("  %s: %s\n", lumvik_host_status_name(status), lumvik_host_last_error());
      ++failures;
    }
    lumvik_host_close(photo);
  }
  return failures == 0 ? 0 : 1;
}
