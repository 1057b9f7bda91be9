#include "tools/console.h"

#include <algorithm>
#include <iostream>
#include <string>

namespace captionfx {

void PrintLine(std::string_view message) {
    constexpr unsigned char kFirstPrintable = 0x20, kDelete = 0x7F;
    std::string line(message);
    std::replace_if(
        line.begin(), line.end(),
        [](char c) {
            return static_cast<unsigned char>(c) < kFirstPrintable || static_cast<unsigned char>(c) == kDelete;
        },
        ' ');
    std::cerr << "captionfx: " << line << '\n';
}

}  // namespace captionfx
