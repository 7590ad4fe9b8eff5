#include "platform/memory.h"

#include <cstdlib>

// The C library of the machine, if it is the one that has these.
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace kelvane {

void KeepLargeBlocksApart() {
#ifdef __GLIBC__
  mallopt(M_MMAP_THRESHOLD, kLargeBlock);
  // The heap's end does not go back and forth for what is needed again at once.
  mallopt(M_TRIM_THRESHOLD, 16 * kLargeBlock);
#endif
}

void GiveBackMemory() {
#ifdef __GLIBC__
  malloc_trim(0);
#endif
}

}  // namespace kelvane
