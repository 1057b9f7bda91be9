#include "platform/windows/debug_output.h"

#include <windows.h>

#include "platform/windows/wide_text.h"

namespace captionfx {

void DebuggerOutput::Write(std::string_view message) {
    OutputDebugStringW(WideOf(message).c_str());
}

}  // namespace captionfx
