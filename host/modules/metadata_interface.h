/* The interface between the host library and the metadata module. Both are built from one tree, and the
 * version lets the library refuse a module of another one. C, so that no exception and no type of a C++
 * runtime crosses it. */
#ifndef LUMVIK_HOST_MODULES_METADATA_INTERFACE_H_
#define LUMVIK_HOST_MODULES_METADATA_INTERFACE_H_

/* NOLINTBEGIN: modules may be written in C */
#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Changes with every change of this file. */
#define LUMVIK_METADATA_VERSION 2

/* The name of the module's only exported function, of type lumvik_metadata_entry. */
#define LUMVIK_METADATA_ENTRY "lumvik_metadata_module"

enum lumvik_metadata_status {
  LUMVIK_METADATA_OK = 0,
  LUMVIK_METADATA_NONE = 1,          /* A format that the module does not know. */
  LUMVIK_METADATA_DAMAGED = 2,       /* The metadata of the photograph cannot be read. */
  LUMVIK_METADATA_UNWRITABLE = 3,    /* The image cannot hold the metadata. */
  LUMVIK_METADATA_OUT_OF_MEMORY = 4, /* Memory is exhausted. */
  LUMVIK_METADATA_STOPPED = 5        /* A callback returned 0. */
};

/* The reason for DAMAGED and UNWRITABLE; longer ones are cut off. */
typedef struct lumvik_metadata_error {
  char text[1024];
} lumvik_metadata_error;

/* The image as stored by the camera. */
typedef struct lumvik_metadata_frame {
  int32_t width; /* Pixels; 0 if unknown. */
  int32_t height;
  int32_t orientation; /* EXIF code, 1 to 8. */
} lumvik_metadata_frame;

/* Receives an XMP property: the prefix of its namespace, its name without the prefix, and its value or the
 * items of a list. Returns 0 to stop. Must not throw. */
typedef int32_t (*lumvik_metadata_property)(void* user, const char* prefix, const char* name,
                                            const char* const* parts, size_t count);

/* Receives a file. Returns 0 to stop. Must not throw. */
typedef int32_t (*lumvik_metadata_file)(void* user, const void* data, size_t size);

/* Receives what is left out, such as "damaged EXIF", and why. Returns 0 to stop. Must not throw. */
typedef int32_t (*lumvik_metadata_left_out)(void* user, const char* what, const char* why);

typedef struct lumvik_metadata_copy_options {
  int32_t keep_position;
  int32_t is_srgb;       /* Of the image, whatever the photograph states. */
  const char* copyright; /* Replaces the photograph's; null keeps it. */
} lumvik_metadata_copy_options;

typedef struct lumvik_metadata_exif {
  char lens[128]; /* "" if unknown */
  char datetime[32];
} lumvik_metadata_exif;

/* Paths and texts are UTF-8. Every function returns a lumvik_metadata_status. Calls must not overlap. */
typedef struct lumvik_metadata_functions {
  uint32_t version;

  /* Adds the photograph's metadata to an image, which has at most an orientation, and hands over the new
   * file; nothing if there is no metadata. What is damaged or does not fit the format is left out. May change
   * the bytes of the image. */
  int32_t (*copy)(const char* photograph, void* image, size_t size,
                  const lumvik_metadata_copy_options* options, lumvik_metadata_file receive,
                  lumvik_metadata_left_out left_out, void* user, lumvik_metadata_error* error);

  /* The Camera Raw properties, and lumvik's own, in the metadata of a photograph. */
  int32_t (*read_photograph)(const char* path, lumvik_metadata_frame* frame, lumvik_metadata_property receive,
                             void* user, lumvik_metadata_error* error);

  /* The same in an XMP packet. */
  int32_t (*read_packet)(const char* packet, size_t size, lumvik_metadata_frame* frame,
                         lumvik_metadata_property receive, void* user, lumvik_metadata_error* error);

  int32_t (*read_exif)(const char* path, lumvik_metadata_exif* exif, lumvik_metadata_error* error);
} lumvik_metadata_functions;

/* Returns the functions, which stay valid until the module is unloaded. Only the version may be read before
 * it is known to match. */
typedef const lumvik_metadata_functions* (*lumvik_metadata_entry)(void);

#ifdef __cplusplus
}
#endif

/* NOLINTEND */

#endif /* LUMVIK_HOST_MODULES_METADATA_INTERFACE_H_ */
