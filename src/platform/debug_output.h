// The debug output: the one place where the library says anything.
#pragma once

#include <string_view>

namespace captionfx {

class DebugOutput {
public:
    virtual ~DebugOutput() = default;

    /// Writes one message. An output that works by lines ends a message that has no line end of its own.
    virtual void Write(std::string_view message) = 0;
};

}  // namespace captionfx
