#include "base/pages.h"

namespace lumvik {

// On Windows large pages need a privilege that no user has by default.
void PreferHugePages(void* /*memory*/, size_t /*bytes*/) {}

// Windows would write the pages to its page file, or drop them at once.
void OfferPages(void* /*memory*/, size_t /*bytes*/) {}

}  // namespace lumvik
