/* Lists the numeric settings with their ranges, writes some to a file and reads them back.
 *
 *   cc host_settings.c $(pkg-config --cflags --libs lumvik_host) -o host_settings
 *   ./host_settings look.json
 */
#include <lumvik_host.h>
#include <stdio.h>

static lumvik_host_status ListSettings(void) {
  for (size_t i = 0; i < lumvik_host_setting_count(); ++i) {
    lumvik_host_setting_info info = {.struct_size = sizeof info};
    const lumvik_host_status status = lumvik_host_describe_setting(i, &info);
    if (status != LUMVIK_HOST_OK) return status;
    if (info.kind == LUMVIK_HOST_CURVE) continue; /* points instead of a number */
    printf("%s: %g to %g, neutral %g\n", info.key, (double)info.minimum, (double)info.maximum,
           (double)info.neutral_value);
  }
  return LUMVIK_HOST_OK;
}

static lumvik_host_status MakeLook(lumvik_host_settings* look) {
  const float curve[] = {0.0f, 0.0f, 0.25f, 0.2f, 1.0f, 1.0f};
  lumvik_host_status status = lumvik_host_settings_set_number(look, "vibrance", 30.0f);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_set_number(look, "hsl.blue.luminance", -10.0f);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_set_curve(look, "tone_curves.master", curve, 3);
  return status;
}

static lumvik_host_status WriteAndRead(const char* path) {
  lumvik_host_settings *look = NULL, *copy = NULL;
  int32_t equal = 0;
  lumvik_host_status status = lumvik_host_settings_create(&look);
  if (status == LUMVIK_HOST_OK) status = MakeLook(look);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_write(look, path, 1);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_read(path, &copy);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_equal(look, copy, &equal);
  if (status == LUMVIK_HOST_OK) printf("read back: %s\n", equal ? "equal" : "different");
  lumvik_host_settings_close(copy);
  lumvik_host_settings_close(look);
  return status;
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: host_settings OUT.json\n");
    return 2;
  }
  lumvik_host_status status = ListSettings();
  if (status == LUMVIK_HOST_OK) status = WriteAndRead(argv[1]);
  if (status != LUMVIK_HOST_OK) fprintf(stderr, "%s\n", lumvik_host_last_error());
  return status == LUMVIK_HOST_OK ? 0 : 1;
}
