// Time and processors as Windows tells them.
#pragma once

#include "platform/clock.h"

namespace captionfx {

class MultimediaClock final : public Clock {
public:
    uint32_t Milliseconds() override;
    int32_t ProcessorCount() override;
};

}  // namespace captionfx
