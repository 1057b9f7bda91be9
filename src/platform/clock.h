// Time and processors.
#pragma once

#include <cstdint>

namespace captionfx {

class Clock {
public:
    virtual ~Clock() = default;

    /// Milliseconds from some fixed moment; wraps after 49 days.
    [[nodiscard]] virtual uint32_t Milliseconds() = 0;

    /// Processors that threads can run on, at least 1.
    [[nodiscard]] virtual int32_t ProcessorCount() = 0;
};

}  // namespace captionfx
