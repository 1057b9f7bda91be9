#include "platform/linux/page_memory.h"

#include <sys/mman.h>

namespace captionfx {

void* MappedMemory::Reserve(size_t bytes) noexcept {
    void* const block = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return block == MAP_FAILED ? nullptr : block;
}

void MappedMemory::Release(void* block, size_t bytes) noexcept {
    munmap(block, bytes);
}

}  // namespace captionfx
