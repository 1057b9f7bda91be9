#include "tools/input_file.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

namespace captionfx {

std::string ReadWholeFile(const std::filesystem::path& path) {
    const auto fail = [&](const std::string& reason) { throw std::runtime_error(path.string() + ": " + reason); };
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) fail("is a folder, not a title");
    std::ifstream file(path, std::ios::binary);
    if (!file) fail("cannot be opened: " + std::generic_category().message(errno));
    std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (bytes.empty()) fail("is empty");
    return bytes;
}

}  // namespace captionfx
