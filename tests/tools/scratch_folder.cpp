#include "tests/tools/scratch_folder.h"

#include <array>
#include <cstdio>
#include <random>

namespace captionfx {

ScratchFolder::ScratchFolder() {
    std::random_device random;
    do {
        std::array<char, 40> name{};
        std::snprintf(name.data(), name.size(), "captionfx-test-%08x%08x", random(), random());
        path_ = std::filesystem::temp_directory_path() / name.data();
    } while (!std::filesystem::create_directory(path_));
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace captionfx
