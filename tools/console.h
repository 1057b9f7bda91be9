// What the tool says on standard error: whole lines, each with the tool's name in front.
#pragma once

#include <string_view>

namespace captionfx {

/// Prints one line, whatever `message` holds: it may quote arguments, and those may hold line ends.
void PrintLine(std::string_view message);

}  // namespace captionfx
