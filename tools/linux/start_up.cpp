#include "tools/start_up.h"

#include <algorithm>

namespace captionfx {

std::vector<std::string> StartUp(int argc, char** argv) {
    return {argv + std::min(argc, 1), argv + argc};
}

}  // namespace captionfx
