#include "linux/mainloop/memory_use.h"

#include <cstdlib>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace orvane::host {

void giveMemoryBackEarly() {
#ifdef __GLIBC__
  constexpr int largestRemainder = 64 * 1024;  // bytes
  mallopt(M_ARENA_MAX, 1);
  mallopt(M_TRIM_THRESHOLD, largestRemainder);
  mallopt(M_MMAP_THRESHOLD, largestRemainder);
#endif
}

}  // namespace orvane::host
