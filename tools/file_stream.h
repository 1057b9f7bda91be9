// Files by their path, whose characters are not those of fopen on every system. All binary; null, with errno set, where
// the file cannot be had.
#pragma once

#include <cstdio>
#include <filesystem>

namespace captionfx {

[[nodiscard]] std::FILE* OpenForReading(const std::filesystem::path& path);

/// What is there already is lost.
[[nodiscard]] std::FILE* OpenForWriting(const std::filesystem::path& path);

/// A file that is not there yet; it is an error if it is.
[[nodiscard]] std::FILE* CreateForWriting(const std::filesystem::path& path);

}  // namespace captionfx
