// The debug output of a system without a debug channel: standard error.
#pragma once

#include "platform/debug_output.h"

namespace captionfx {

class StandardErrorOutput final : public DebugOutput {
public:
    void Write(std::string_view message) override;
};

}  // namespace captionfx
