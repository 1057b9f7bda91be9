// What a system wants of a program before anything else.
#pragma once

#include <string>
#include <vector>

namespace captionfx {

/// Makes standard output and standard error take bytes as they are, which are UTF-8 on a console. The arguments of the
/// program, UTF-8, without its own name.
[[nodiscard]] std::vector<std::string> StartUp(int argc, char** argv);

}  // namespace captionfx
