// Files that are read whole.
#pragma once

#include <filesystem>
#include <string>

namespace captionfx {

/// The bytes of a file. Throws std::runtime_error with one line, the file and the reason, for one that cannot be read
/// or is empty.
[[nodiscard]] std::string ReadWholeFile(const std::filesystem::path& path);

}  // namespace captionfx
