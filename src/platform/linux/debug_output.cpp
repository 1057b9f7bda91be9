#include "platform/linux/debug_output.h"

#include <cstdio>
#include <string>

namespace captionfx {

void StandardErrorOutput::Write(std::string_view message) {
    std::string line(message);
    if (!line.ends_with('\n')) line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);  // one call: lines of two titles do not mix
}

}  // namespace captionfx
