// Use of the library in child processes made with fork().
#ifndef LUMVIK_BASE_AFTER_FORK_H_
#define LUMVIK_BASE_AFTER_FORK_H_

namespace lumvik {

// Only the thread that calls fork() exists in the child: what is handed to the thread pools of OpenCV and
// LibRaw would never be done. From this call on, children work with one thread. Returns false if memory is
// exhausted.
bool WorkInForkedChildren();

}  // namespace lumvik

#endif  // LUMVIK_BASE_AFTER_FORK_H_
