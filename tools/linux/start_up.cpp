#include "tools/start_up.h"

namespace captionfx {

std::vector<std::string> StartUp(int argc, char** argv) {
    return {argv, argv + argc};
}

}  // namespace captionfx
