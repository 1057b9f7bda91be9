#include "tests/tools/scratch_folder.h"

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

namespace captionfx {

ScratchFolder::ScratchFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "captionfx-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::system_error(errno, std::generic_category(), name);
    path_ = name;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace captionfx
