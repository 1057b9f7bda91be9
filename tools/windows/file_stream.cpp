#include "tools/file_stream.h"

#include <fcntl.h>
#include <io.h>

#include <sys/stat.h>

namespace captionfx {

std::FILE* OpenForReading(const std::filesystem::path& path) {
    return _wfopen(path.c_str(), L"rb");
}

std::FILE* OpenForWriting(const std::filesystem::path& path) {
    return _wfopen(path.c_str(), L"wb");
}

std::FILE* CreateForWriting(const std::filesystem::path& path) {
    const int descriptor = _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY, _S_IREAD | _S_IWRITE);
    return descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
}

}  // namespace captionfx
