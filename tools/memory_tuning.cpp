#include "tools/memory_tuning.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace captionfx {

void KeepFreedMemory() {
#if defined(__GLIBC__)
    // Either setting alone would end the automatic choice of the other.
    constexpr int kLargestBlock = 64 << 20, kMostKept = 256 << 20;
    mallopt(M_MMAP_THRESHOLD, kLargestBlock / 2);
    mallopt(M_TRIM_THRESHOLD, kMostKept);
#endif
}

}  // namespace captionfx
