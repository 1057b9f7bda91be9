#include "tools/png_file.h"

#include <cassert>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <png.h>
#include <stdexcept>
#include <string>
#include <system_error>

#include "tools/file_stream.h"
#include "tools/output_file.h"

namespace captionfx {
namespace {

namespace fs = std::filesystem;

struct FileCloser {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

/// libpng's record of one transfer, freed whatever happens. The simplified interface reports its errors in `message`
/// instead of jumping over destructors.
struct Transfer {
    png_image image{};

    Transfer() { image.version = PNG_IMAGE_VERSION; }
    ~Transfer() { png_image_free(&image); }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;
};

[[noreturn]] void Fail(const char* what, const fs::path& path, const std::string& reason) {
    throw std::runtime_error(std::string(what) + " '" + path.string() + "': " + reason);
}

std::string LastError() {
    return std::generic_category().message(errno);
}

}  // namespace

void WritePng(const fs::path& path, std::span<const uint32_t> pixels, int32_t width, int32_t height) {
    assert(width > 0 && height > 0);
    assert(pixels.size() == static_cast<size_t>(width) * static_cast<size_t>(height));

    OutputFile file(path);
    Transfer transfer;
    transfer.image.width = static_cast<png_uint_32>(width);
    transfer.image.height = static_cast<png_uint_32>(height);
    transfer.image.format = PNG_FORMAT_BGRA;
    if (png_image_write_to_stdio(&transfer.image, file.Stream(), 0, pixels.data(), 0, nullptr) == 0)
        Fail("cannot write", path, transfer.image.message);
    file.Finish();
}

PngImage ReadPng(const fs::path& path) {
    const FileHandle file(OpenForReading(path));
    if (!file) Fail("cannot read", path, LastError());
    Transfer transfer;
    if (png_image_begin_read_from_stdio(&transfer.image, file.get()) == 0)
        Fail("cannot read", path, transfer.image.message);
    transfer.image.format = PNG_FORMAT_BGRA;

    PngImage result;
    result.width = static_cast<int32_t>(transfer.image.width);
    result.height = static_cast<int32_t>(transfer.image.height);
    result.pixels.resize(static_cast<size_t>(result.width) * static_cast<size_t>(result.height));
    if (png_image_finish_read(&transfer.image, nullptr, result.pixels.data(), 0, nullptr) == 0)
        Fail("cannot read", path, transfer.image.message);
    return result;
}

}  // namespace captionfx
