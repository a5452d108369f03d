#include "base/after_fork.h"

namespace lumvik {

bool WorkInForkedChildren() {
  return true;  // there is no fork()
}

}  // namespace lumvik
