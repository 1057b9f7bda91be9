#include "tools/file_stream.h"

namespace captionfx {

std::FILE* OpenForReading(const std::filesystem::path& path) {
    return std::fopen(path.c_str(), "rb");
}

std::FILE* OpenForWriting(const std::filesystem::path& path) {
    return std::fopen(path.c_str(), "wb");
}

std::FILE* CreateForWriting(const std::filesystem::path& path) {
    return std::fopen(path.c_str(), "wbx");
}

}  // namespace captionfx
