// The debug output of Windows: debuggers and viewers of it show what is written there.
#pragma once

#include "platform/debug_output.h"

namespace captionfx {

class DebuggerOutput final : public DebugOutput {
public:
    void Write(std::string_view message) override;
};

}  // namespace captionfx
