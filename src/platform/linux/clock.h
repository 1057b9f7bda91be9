// Time and processors of a POSIX system.
#pragma once

#include "platform/clock.h"

namespace captionfx {

class SteadyClock final : public Clock {
public:
    uint32_t Milliseconds() override;
    int32_t ProcessorCount() override;
};

}  // namespace captionfx
