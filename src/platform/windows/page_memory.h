// Page-granular memory of Windows.
#pragma once

#include "platform/page_memory.h"

namespace captionfx {

class VirtualMemory final : public PageMemory {
public:
    void* Reserve(size_t bytes) noexcept override;
    void Release(void* block, size_t bytes) noexcept override;
};

}  // namespace captionfx
