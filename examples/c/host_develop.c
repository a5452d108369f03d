/* Develops a photograph with settings that are neutral but for exposure and contrast.
 *
 *   cc host_develop.c $(pkg-config --cflags --libs lumvik_host) -o host_develop
 *   ./host_develop photo.ARW photo.jpg
 */
#include <lumvik_host.h>
#include <stdio.h>

static lumvik_host_status Develop(lumvik_host_photo* photo, lumvik_host_settings* settings, const char* out) {
  const lumvik_host_save_options options = {.struct_size = sizeof options, .overwrite = 1};
  lumvik_host_status status = lumvik_host_settings_set_number(settings, "exposure", 0.5f); /* stops */
  if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_set_number(settings, "contrast", 20.0f);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_set_settings(photo, settings);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_save(photo, out, &options); /* with its metadata */
  return status;
}

int main(int argc, char** argv) {
  if (argc != 3) {
    fprintf(stderr, "usage: host_develop IN OUT\n");
    return 2;
  }
  lumvik_host_photo* photo = NULL;
  lumvik_host_settings* settings = NULL;
  lumvik_host_status status = lumvik_host_open(argv[1], NULL, &photo);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_create(&settings);
  if (status == LUMVIK_HOST_OK) status = Develop(photo, settings, argv[2]);
  if (status != LUMVIK_HOST_OK) fprintf(stderr, "%s\n", lumvik_host_last_error());
  lumvik_host_settings_close(settings);
  lumvik_host_close(photo);
  return status == LUMVIK_HOST_OK ? 0 : 1;
}
