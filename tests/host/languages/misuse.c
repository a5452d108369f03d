/*
 * Misuses of the engine and of the host library from C: each gives a status, and the process lives.
 *
 *   host_misuse_c RAW_FILE
 */
#define _DEFAULT_SOURCE /* mkdtemp */
#include <math.h>
#include <pthread.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "lumvik_host.h"

typedef lumvik_host_status Status;

static lumvik_host_photo* photo;
static lumvik_host_settings* settings;
static char folder[] = "/tmp/lumvik-XXXXXX";

static Status SaveAs(const char* name, const lumvik_host_save_options* given) {
  lumvik_host_save_options options = {0};
  char path[2048];
  if (given != NULL) options = *given;
  options.struct_size = sizeof(options);
  options.metadata = LUMVIK_HOST_METADATA_NONE;
  snprintf(path, sizeof(path), "%s/%s", folder, name);
  return lumvik_host_save(photo, path, &options);
}

static Status WithoutDot(void) {
  return SaveAs("out", NULL);
}
static Status UnknownExtension(void) {
  return SaveAs("out.xyz", NULL);
}
static Status MissingFolder(void) {
  return SaveAs("missing/out.jpg", NULL);
}

static Status BitsOfAnotherFormat(void) {
  lumvik_host_save_options options = {0};
  options.bits = 16;
  return SaveAs("out.jpg", &options);
}

static Status ZeroRadius(void) {
  lumvik_host_settings_set_number(settings, "sharpening_amount", 50);
  return lumvik_host_settings_set_number(settings, "sharpening_radius", 0);
}

static Status NotANumber(void) {
  return lumvik_host_settings_set_number(settings, "exposure", NAN);
}
static Status Infinite(void) {
  return lumvik_host_settings_set_number(settings, "tint", -INFINITY);
}
static Status FarOutside(void) {
  return lumvik_host_settings_set_number(settings, "clarity", 1e30F);
}

/* The mask has the size of the image before cropping. */
static Status CutoutOfACrop(void) {
  lumvik_host_settings* cropped = NULL;
  char path[2048];
  Status status = lumvik_host_settings_create(&cropped);
  snprintf(path, sizeof(path), "%s/cutout.png", folder);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_find_subject(photo, -1, -1);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_settings_set_number(cropped, "crop.w", 0.5F);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_set_settings(photo, cropped);
  if (status == LUMVIK_HOST_OK) status = lumvik_host_save_cutout(photo, path, NULL);
  lumvik_host_settings_close(cropped);
  lumvik_host_set_settings(photo, NULL);
  return status;
}

/* The status of opening goes unnoticed. */
static Status SaveWhatDidNotOpen(void) {
  lumvik_host_photo* other = NULL;
  lumvik_host_open(folder, NULL, &other);
  return lumvik_host_save(other, "out.jpg", NULL);
}

#if defined(LUMVIK_SANITIZE_ADDRESS) || defined(LUMVIK_SANITIZE_THREAD)
static Status OutOfMemory(void) {
  return LUMVIK_HOST_OUT_OF_MEMORY; /* a sanitizer needs the address space itself */
}
#else
static void PutLittleEndian(unsigned char* bytes, unsigned value) {
  int i = 0;
  for (i = 0; i < 4; ++i) bytes[i] = (unsigned char)(value >> (8 * i));
}

/* A bitmap of 12000 x 12000 pixels, most of it a hole in the file. */
static int WriteLargeBitmap(const char* path) {
  enum { kSide = 12000, kHeader = 54 };
  const unsigned size = 3U * kSide * kSide;
  unsigned char header[kHeader] = {'B', 'M'};
  FILE* file = fopen(path, "wb");
  if (file == NULL) return 0;
  PutLittleEndian(header + 2, size + kHeader);
  PutLittleEndian(header + 10, kHeader);
  PutLittleEndian(header + 14, 40);
  PutLittleEndian(header + 18, kSide);
  PutLittleEndian(header + 22, kSide);
  header[26] = 1;
  header[28] = 24;
  fwrite(header, 1, kHeader, file);
  fclose(file);
  return truncate(path, (long)size + kHeader) == 0;
}

static Status OutOfMemory(void) {
  struct rlimit unlimited;
  struct rlimit limited;
  lumvik_host_photo* large = NULL;
  long pages = 0;
  char path[2048];
  Status status = LUMVIK_HOST_INTERNAL;
  FILE* memory = fopen("/proc/self/statm", "r");
  if (memory == NULL || fscanf(memory, "%ld", &pages) != 1) return LUMVIK_HOST_INTERNAL;
  fclose(memory);
  snprintf(path, sizeof(path), "%s/large.bmp", folder);
  if (!WriteLargeBitmap(path)) return LUMVIK_HOST_INTERNAL;
  getrlimit(RLIMIT_AS, &unlimited);
  limited = unlimited;
  limited.rlim_cur = (rlim_t)pages * (rlim_t)sysconf(_SC_PAGESIZE) + (100U << 20);
  setrlimit(RLIMIT_AS, &limited);
  status = lumvik_host_open(path, NULL, &large);
  setrlimit(RLIMIT_AS, &unlimited);
  lumvik_host_close(large);
  return status;
}
#endif

static void* RenderOften(void* failures) {
  int i = 0;
  for (i = 0; i < 5; ++i) {
    lumvik_host_histogram histogram;
    if (lumvik_host_get_histogram(photo, &histogram) != LUMVIK_HOST_OK) ++*(int*)failures;
  }
  return NULL;
}

static Status TwoThreads(void) {
  pthread_t thread;
  int failures = 0;
  int others = 0;
  pthread_create(&thread, NULL, RenderOften, &others);
  RenderOften(&failures);
  pthread_join(thread, NULL);
  return failures + others == 0 ? LUMVIK_HOST_OK : LUMVIK_HOST_INTERNAL;
}

static Status UseAfterClose(void) {
  lumvik_host_settings* closed = NULL;
  lumvik_host_settings_create(&closed);
  lumvik_host_settings_close(closed);
  return lumvik_host_settings_clear(closed);
}

static Status CloseTwice(void) {
  lumvik_host_settings* closed = NULL;
  lumvik_host_settings_create(&closed);
  lumvik_host_settings_close(closed);
  return lumvik_host_settings_close(closed);
}

static Status FreeTwice(void) {
  char* json = NULL;
  const Status status = lumvik_host_settings_to_json(settings, &json);
  lumvik_host_free(json);
  lumvik_host_free(json);
  return status;
}

static Status HandleOfAnotherKind(void) {
  return lumvik_host_render((lumvik_host_photo*)settings);
}
static Status MadeUpHandle(void) {
  return lumvik_host_render((lumvik_host_photo*)folder);
}
static Status NullHandle(void) {
  return lumvik_host_render(NULL);
}
static Status NullPath(void) {
  return lumvik_host_open(NULL, NULL, &photo);
}
static Status NullOutput(void) {
  return lumvik_host_settings_create(NULL);
}

static Status NoStructSize(void) {
  lumvik_host_photo_info info = {0};
  return lumvik_host_get_info(photo, &info);
}

static Status SmallBuffer(void) {
  unsigned char pixel[4];
  return lumvik_host_get_preview(photo, NULL, pixel, sizeof(pixel), NULL, NULL);
}

/* The child's answers; the parent's own handles stay valid. */
static Status ForkedChild(void) {
  int state = 0;
  const pid_t child = fork();
  if (child == 0) {
    lumvik_host_settings* own = NULL;
    alarm(60);
    if (lumvik_host_settings_create(&own) != LUMVIK_HOST_OK) _exit(LUMVIK_HOST_INTERNAL);
    if (lumvik_host_settings_close(settings) != LUMVIK_HOST_FORKED) _exit(LUMVIK_HOST_INTERNAL);
    _exit((int)lumvik_host_render(photo));
  }
  waitpid(child, &state, 0);
  return WIFEXITED(state) ? (Status)WEXITSTATUS(state) : LUMVIK_HOST_INTERNAL;
}

static void RemoveFolder(void) {
  static const char* const kNames[] = {"out.jpg", "large.bmp", "cutout.png"};
  size_t i = 0;
  for (i = 0; i < sizeof(kNames) / sizeof(*kNames); ++i) {
    char path[2048];
    snprintf(path, sizeof(path), "%s/%s", folder, kNames[i]);
    unlink(path);
  }
  rmdir(folder);
}

struct Misuse {
  const char* what;
  Status (*call)(void);
  Status expected;
};

static const struct Misuse kMisuses[] = {
    {"saving to a path without a dot", WithoutDot, LUMVIK_HOST_INVALID_ARGUMENT},
    {"saving with an unknown extension", UnknownExtension, LUMVIK_HOST_INVALID_ARGUMENT},
    {"saving into a missing folder", MissingFolder, LUMVIK_HOST_NOT_FOUND},
    {"saving a JPEG with 16 bits", BitsOfAnotherFormat, LUMVIK_HOST_INVALID_ARGUMENT},
    {"sharpening with radius 0", ZeroRadius, LUMVIK_HOST_INVALID_ARGUMENT},
    {"a setting that is NaN", NotANumber, LUMVIK_HOST_INVALID_ARGUMENT},
    {"an infinite setting", Infinite, LUMVIK_HOST_INVALID_ARGUMENT},
    {"a setting far out of range", FarOutside, LUMVIK_HOST_INVALID_ARGUMENT},
    {"a cutout of a cropped photo", CutoutOfACrop, LUMVIK_HOST_UNSUPPORTED},
    {"saving a photo that did not open", SaveWhatDidNotOpen, LUMVIK_HOST_INVALID_HANDLE},
    {"running out of memory", OutOfMemory, LUMVIK_HOST_OUT_OF_MEMORY},
    {"two threads with one photo", TwoThreads, LUMVIK_HOST_OK},
    {"use after closing", UseAfterClose, LUMVIK_HOST_INVALID_HANDLE},
    {"closing twice", CloseTwice, LUMVIK_HOST_INVALID_HANDLE},
    {"releasing twice", FreeTwice, LUMVIK_HOST_OK},
    {"a handle of another kind", HandleOfAnotherKind, LUMVIK_HOST_INVALID_HANDLE},
    {"a made-up handle", MadeUpHandle, LUMVIK_HOST_INVALID_HANDLE},
    {"a null handle", NullHandle, LUMVIK_HOST_INVALID_HANDLE},
    {"a null path", NullPath, LUMVIK_HOST_INVALID_ARGUMENT},
    {"a null output", NullOutput, LUMVIK_HOST_INVALID_ARGUMENT},
    {"a struct without its size", NoStructSize, LUMVIK_HOST_INVALID_ARGUMENT},
    {"a buffer that is too small", SmallBuffer, LUMVIK_HOST_BUFFER_TOO_SMALL},
    {"the parent's photo in a forked child", ForkedChild, LUMVIK_HOST_FORKED},
};

int main(int argc, char** argv) {
  const size_t count = sizeof(kMisuses) / sizeof(*kMisuses);
  size_t wrong = 0;
  size_t i = 0;
  if (argc != 2 || mkdtemp(folder) == NULL) return EXIT_FAILURE;
  if (lumvik_host_open(argv[1], NULL, &photo) != LUMVIK_HOST_OK ||
      lumvik_host_settings_create(&settings) != LUMVIK_HOST_OK) {
    fprintf(stderr, "%s\n", lumvik_host_last_error());
    return EXIT_FAILURE;
  }
  for (i = 0; i < count; ++i) {
    const Status status = kMisuses[i].call();
    if (status == kMisuses[i].expected) continue;
    printf("%s: %s, not %s: %s\n", kMisuses[i].what, lumvik_host_status_name((int32_t)status),
           lumvik_host_status_name((int32_t)kMisuses[i].expected), lumvik_host_last_error());
    ++wrong;
  }
  /* After all this both objects are of use. */
  if (SaveAs("out.jpg", NULL) != LUMVIK_HOST_OK || lumvik_host_settings_clear(settings) != LUMVIK_HOST_OK) {
    printf("the photo is not of use afterwards: %s\n", lumvik_host_last_error());
    ++wrong;
  }
  lumvik_host_settings_close(settings);
  lumvik_host_close(photo);
  RemoveFolder();
  printf("%zu misuses, %zu wrong\n", count, wrong);
  return wrong == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
