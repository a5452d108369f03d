/* Develops one photograph twice in parallel. A context must be used by one thread at a time, so each has its
 * own.
 *
 *   cc two_threads.c $(pkg-config --cflags --libs lumvik) -pthread -o two_threads
 *   ./two_threads photo.ARW dark.jpg bright.jpg
 */
#include <lumvik.h>
#include <stdio.h>
#include <threads.h>

typedef struct Job {
  const char* in;
  const char* out;
  float exposure;
} Job;

static int Develop(void* argument) {
  const Job* job = argument;
  EngineContext* photo = lumvik_create_context();
  if (photo == NULL) return -1;
  int status = lumvik_load_arw(photo, job->in, 1);
  if (status == LUMVIK_OK) {
    lumvik_set_temperature(photo, 6500.0f); /* neutral */
    lumvik_set_exposure(photo, job->exposure);
    status = lumvik_export_jpeg(photo, job->out, 90, 0, 1);
  }
  if (status != LUMVIK_OK) fprintf(stderr, "%s\n", lumvik_last_error(photo));
  lumvik_destroy_context(photo);
  return status;
}

int main(int argc, char** argv) {
  if (argc != 4) {
    fprintf(stderr, "usage: two_threads IN DARK.jpg BRIGHT.jpg\n");
    return 2;
  }
  Job dark = {argv[1], argv[2], -1.0f};
  Job bright = {argv[1], argv[3], 1.0f};
  thrd_t thread;
  int dark_status = -1;
  if (thrd_create(&thread, Develop, &dark) != thrd_success) return 1;
  const int bright_status = Develop(&bright);
  thrd_join(thread, &dark_status);
  return dark_status == LUMVIK_OK && bright_status == LUMVIK_OK ? 0 : 1;
}
